#include "tables/PublishingOperations.h"

namespace tables {

std::span<const PublishingOperation> PublishingOperations() {
    static constexpr PublishingOperation kTable[] = {
#define OPERATION(name, step, sourceFile) operation::name,
#include "tables/PublishingOperations.inc"
#undef OPERATION
    };
    return kTable;
}

}  // namespace tables
