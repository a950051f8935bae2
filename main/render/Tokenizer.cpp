#include "render/Tokenizer.h"

namespace runtime {

Tokenizer::~Tokenizer() = default;

}  // namespace runtime
