#pragma once
// How the storage layer rewrites a partition during an installation. Stored in parameter files
// as its integer value; the fixed underlying type makes every stored integer a valid value.

#include <cstdint>

namespace Orvo {
namespace Common {
namespace Storage {

enum class ETransactionalRewriteMode : int32_t {
    None = 0,         // blocks are written in place, without a transaction
    Full = 1,         // every block is rewritten inside the transaction
    Differential = 2, // only blocks that differ from the target's content are rewritten
};

} // namespace Storage
} // namespace Common
} // namespace Orvo
