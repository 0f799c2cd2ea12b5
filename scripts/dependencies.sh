# shellcheck shell=bash
# Sourced by the commands of this project: makes sure that the tools and libraries that one of them needs are
# there. Debian's packages are installed; on another system what is missing is named.

# What for, package, and what shows that it is there: a program, a module of Python, a file, a header that the
# compiler must find, or a runtime that clang must link.
dependencies='
build g++                program g++
build cmake              program cmake
build ninja-build        program ninja
build nlohmann-json3-dev header  nlohmann/json.hpp
build libcli11-dev       header  CLI/CLI.hpp
build libsqlite3-dev     header  sqlite3.h
build android-liblog-dev header  android/log.h
test  libgtest-dev       header  gtest/gtest.h
test  libgmock-dev       header  gmock/gmock.h
test  python3            program python3
test  python3-jsonschema module  jsonschema
bench libbenchmark-dev   header  benchmark/benchmark.h
bench libboost-dev       header  boost/crc.hpp
clang clang              program clang++
clang libclang-rt-dev    runtime fuzzer
libcxx clang             program clang++
libcxx libc++-dev        file    /usr/include/c++/v1/vector
libcxx libc++abi-dev     file    /usr/lib/x86_64-linux-gnu/libc++abi.so
libcxx googletest        file    /usr/src/googletest/CMakeLists.txt
arm64 g++-aarch64-linux-gnu    program aarch64-linux-gnu-g++
arm64 qemu-user-static         program qemu-aarch64-static
arm64 android-liblog-dev:arm64 file    /usr/lib/aarch64-linux-gnu/android/liblog.so
arm64 libsqlite3-dev:arm64     file    /usr/lib/aarch64-linux-gnu/libsqlite3.so
arm64 googletest               file    /usr/src/googletest/CMakeLists.txt
page  chromium           program chromium
page  chromium-driver    program chromedriver
page  python3-selenium   module  selenium
check git                program git
check clang-format       program clang-format
check clang-tidy         program clang-tidy
check python3            program python3
check cppcheck           program cppcheck
check shellcheck         program shellcheck
cover gcovr              program gcovr
package dpkg-dev         program dpkg-shlibdeps
package file             program file
package debootstrap      program debootstrap
package lintian          program lintian
package mandoc           program mandoc
package shellcheck       program shellcheck
package zsh              program zsh
package python3          program python3
package blueprint-tools  program bpfmt
'

is_there() {
    case $1 in
        program) command -v "$2" >/dev/null ;;
        file) [ -e "$2" ] ;;
        module) PATH=/usr/bin:$PATH python3 -c "import $2" 2>/dev/null ;;
        header) echo "#include <$2>" | g++ -x c++ -I/usr/include/android -E - >/dev/null 2>&1 ;;
        runtime) echo 'extern "C" int LLVMFuzzerTestOneInput(const char*, long) { return 0; }' |
            clang++ -x c++ -fsanitize="$2" -o /dev/null - >/dev/null 2>&1 ;;
    esac
}

# missing_packages PURPOSE...
missing_packages() {
    echo "$dependencies" | while read -r purpose package kind probe; do
        case " $* " in
            *" $purpose "*) [ -z "$package" ] || is_there "$kind" "$probe" || echo "$package" ;;
        esac
    done
}

# install_dependencies PURPOSE...: build, test, page, bench, clang, libcxx, arm64, check, cover, package.
install_dependencies() {
    local missing as_root=()
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -gt 0 ] || return 0
    if ! command -v apt-get >/dev/null; then
        echo "Missing (by the names of Debian's packages):" "${missing[@]}" >&2
        echo "Install them with this system's package manager, then call this again." >&2
        exit 1
    fi
    if [ "$(id -u)" -ne 0 ]; then
        as_root=(sudo)
    fi
    echo "Installing:" "${missing[@]}"
    case "${missing[*]}" in
        *:arm64*) "${as_root[@]}" dpkg --add-architecture arm64 ;;
    esac
    "${as_root[@]}" apt-get update
    DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
    mapfile -t missing < <(missing_packages "$@")
    if [ ${#missing[@]} -gt 0 ]; then
        echo "Still missing after the installation:" "${missing[@]}" >&2
        exit 1
    fi
}
