#include "zvcam/commands/ForEachFile.h"

#include <algorithm>
#include <stdexcept>

#include "zvcam/commands/ExitStatus.h"
#include "zvcam/commands/Terminal.h"

namespace zvcam {

int ForEachFile(const std::vector<std::string>& files,
                const std::function<bool(const std::string&)>& isGood) {
    int status = kExitSuccess;
    for (const std::string& file : files) {
        try {
            status = std::max(status, isGood(file) ? kExitSuccess : kExitBad);
        } catch (const std::runtime_error& error) {
            Complain(error.what());
            status = kExitUnusable;
        }
    }
    return status;
}

}  // namespace zvcam
