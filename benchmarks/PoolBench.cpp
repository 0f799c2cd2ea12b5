// PoolBench LIBRARY PHONE COUNT WORKERS: boots a phone so many times in one program and prints the boots a
// second.

#include <chrono>
#include <exception>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>

#include "supervisor/BootPool.h"
#include "virtualphone/PhoneFile.h"

namespace {

double BootsASecond(const std::string& library, const std::string& file, std::size_t count,
                    std::size_t workers) {
    const virtualphone::PhoneDescription phone = virtualphone::ReadPhoneFile(file);
    supervisor::BootPool pool({.boot = {.library = library, .describe = false}, .workers = workers},
                              [&phone](const std::string&, supervisor::Booter& booter) {
                                  return std::to_string(booter.boot(phone).events.size());
                              });
    const auto start = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < count; ++i) {
        pool.add(i, "");
    }
    while (const std::optional<supervisor::PoolResult> result = pool.next()) {
        if (!result->error.empty()) {
            throw std::runtime_error(result->error);
        }
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    return static_cast<double>(count) / seconds.count();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::cerr << "PoolBench LIBRARY PHONE COUNT WORKERS\n";
        return 2;
    }
    try {
        std::cout << BootsASecond(argv[1], argv[2], std::stoul(argv[3]), std::stoul(argv[4])) << '\n';
    } catch (const std::exception& error) {
        std::cerr << "PoolBench: " << error.what() << '\n';
        return 1;
    }
}
