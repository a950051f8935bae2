#pragma once

#include <optional>
#include <variant>
#include <vector>

#include "ostrelrtcore/Factory.h"

namespace ort::core {

/// How a named function is applied to its inputs.
enum class EvaluationMode {
  Map,           ///< a unary function over one column or scalar
  Zip,           ///< a binary function over two, row by row
  Scan,          ///< a binary function folded over one column, every step of the accumulator kept
  ScanBackward,  ///< the same from the last row to the first, each step at its own row
  Fold,          ///< the same from the first row to the last, only the final accumulator kept
  Call           ///< a multinary function of whole values
};

/// The mode's name as in calls and printed graphs: "map", "zip", "scan", "scanBackward", "fold", "call".
ORTCORE_API char const* EvaluationModeToString(EvaluationMode mode) noexcept;

/// A node's place in its graph, counted from 0 in the order in which nodes are added.
using NodeId = int;

/// A function applied to the results of other nodes. `name` is for people: messages and printed graphs.
struct FunctionNode {
  OStringCore name;
  OStringCore function;
  EvaluationMode mode = EvaluationMode::Map;
  std::vector<NodeId> inputs;
  std::vector<NodeId> parameters;
  /// The accumulator that scan, scanBackward and fold start with; the zero of its type when left out.
  std::optional<NodeId> initial = std::nullopt;
  /// The column whose equal rows form the groups of scan, scanBackward and fold.
  std::optional<NodeId> groups = std::nullopt;
};

/// What is to be computed: constants, named inputs and functions of them. Nodes may refer to nodes that are
/// added later; ids are checked when the graph is evaluated.
class ORTCORE_API FunctionGraph {
 public:
  using Value = factory::Value;
  enum class NodeKind { Constant, Input, Function };

  /// Throws 55 for a null value.
  NodeId AddConstant(OStringCore const& name, Value value);
  /// A value that is given anew, by this name, at each evaluation.
  NodeId AddInput(OStringCore const& name);
  NodeId AddFunction(FunctionNode node);

  int GetCount() const noexcept { return static_cast<int>(nodes_.size()); }
  /// The accessors throw 55 for an id that the graph does not have or a node of another kind.
  NodeKind GetKind(NodeId id) const;
  OStringCore const& GetName(NodeId id) const;
  Value const& GetConstant(NodeId id) const;
  FunctionNode const& GetFunction(NodeId id) const;

 private:
  struct Constant {
    OStringCore name;
    Value value;
  };
  struct Input {
    OStringCore name;
  };
  using Node = std::variant<Constant, Input, FunctionNode>;

  Node const& GetNode(NodeId id) const;

  std::vector<Node> nodes_;
};

}  // namespace ort::core
