#pragma once

#include <exception>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "ostrelrtcore/FunctionRegistry.h"
#include "ostrelrtcore/engine/FunctionGraph.h"

namespace ort::core {

/// A call that no registered function answers: an unknown name (the message gives the nearest one), inputs
/// that suit none of the name's registrations (the message lists them), a mode that the name has no function
/// for, or initial and group values where the mode takes none.
class ORTCORE_API InvalidCall : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  ~InvalidCall() override;
};

/// A graph that can't be evaluated whatever its functions do: a cycle (the message names its nodes), an id
/// that the graph does not have, an input without a value.
class ORTCORE_API InvalidGraph : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  ~InvalidGraph() override;
};

/// A node whose function failed. what() is "node 'x positions' (invlerp): " and the cause's own text.
class ORTCORE_API EvaluationError : public std::exception {
 public:
  EvaluationError(NodeId node, OStringCore const& nodeName, OStringCore const& function,
                  std::exception_ptr cause);
  EvaluationError(EvaluationError const&) noexcept = default;
  EvaluationError& operator=(EvaluationError const&) noexcept = default;
  ~EvaluationError() override;

  NodeId GetNode() const noexcept { return node_; }
  OStringCore const& GetNodeName() const noexcept;
  OStringCore const& GetFunction() const noexcept;
  /// What the function threw, an InvalidCall when none answered; never null.
  std::exception_ptr const& GetCause() const noexcept { return cause_; }
  char const* what() const noexcept override;

 private:
  struct Texts;
  NodeId node_;
  std::exception_ptr cause_;
  std::shared_ptr<Texts const> texts_;
};

/// One function applied to values.
struct FunctionCall {
  using Value = factory::Value;
  OStringCore function;
  EvaluationMode mode = EvaluationMode::Map;
  std::vector<Value> inputs;
  std::vector<Value> parameters;
  Value initial = nullptr;  ///< see FunctionNode
  Value groups = nullptr;   ///< see FunctionNode
};

/// Evaluates functions of a registry over values. Holds no state of its own: one engine serves any number of
/// threads at once, tasks of the task scheduler included. The registry must outlive it and stay unchanged
/// while it evaluates.
///
/// Rows. A column of element type T, or a scalar of type T, suits a slot of type T; no types are converted. A
/// scalar beside a column counts for every row; scalars alone give a scalar. A column of one repeated value
/// stays one where the function is not order-dependent. Columns of unequal length throw 259.
///
/// Special rows. A plain function never sees them: they keep their kind in the result. A row of two operands
/// is special when either is, with the first one's kind where both are. A special function gets every row
/// with its kind. Of a plain and a special registration that both suit a call, the special one serves inputs
/// that have special rows and the plain one all others.
///
/// Folds (scan, scanBackward, fold) take one column, which suits the second slot; the accumulator is of the
/// first slot's type and starts as the initial value. In folds of a plain function a special row keeps its
/// kind and leaves the accumulator as it is. With groups, the rows of each group, in row order, are folded by
/// a functor of their own from the initial value on; a fold then gives a column where every row (a special
/// row of a plain function excepted) holds the final accumulator of its group. Special rows of the group
/// column form one group for each kind.
///
/// The rows of one function are always worked off in order, on one thread, by one functor.
class ORTCORE_API Engine {
 public:
  using Value = factory::Value;

  explicit Engine(FunctionRegistry const& registry) : registry_(&registry) {}

  /// The values of the named nodes, in the order of `outputs`. Each node that they need is evaluated once,
  /// independent ones at the same time, and a result is held no longer than something needs it.
  ///
  /// Throws InvalidGraph before anything is evaluated, and EvaluationError for a node that failed: of several
  /// the one that comes first when outputs, and the nodes that each refers to, are worked off in order.
  std::vector<Value> Evaluate(FunctionGraph const& graph, factory::NamedValues const& inputs,
                              std::span<NodeId const> outputs) const;

  /// Applies one function. Throws InvalidCall, 259, 55 (a null value, a functor that does not fit its
  /// registration, a fold without an initial value for a type that has no zero), and what the function
  /// throws, unchanged.
  Value Call(FunctionCall const& call) const;

  /// Which kinds of function a name is registered as: unary ones are mapped, binary ones zipped, scanned and
  /// folded, multinary ones called.
  struct Forms {
    bool isUnary = false;
    bool isBinary = false;
    bool isMultinary = false;
    bool IsKnown() const { return isUnary || isBinary || isMultinary; }
  };
  Forms GetForms(OStringCore const& function) const;

  /// What to tell of a name that is not registered; it gives the nearest registered name where one is near.
  std::string DescribeUnknownFunction(OStringCore const& function) const;

 private:
  FunctionRegistry const* registry_;
};

}  // namespace ort::core
