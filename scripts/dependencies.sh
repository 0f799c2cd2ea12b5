# Sourced by ./run and ./test: makes sure that the tools and libraries of the build are there.
# Debian's packages are installed; on another system what is missing is named.

# Package, and what shows that it is there: a program, or a header that the compiler must find.
dependencies='
g++                program g++
cmake              program cmake
ninja-build        program ninja
nlohmann-json3-dev header  nlohmann/json.hpp
libcli11-dev       header  CLI/CLI.hpp
android-liblog-dev header  android/log.h
libgtest-dev       header  gtest/gtest.h
libgmock-dev       header  gmock/gmock.h
'

is_there() {
    case $1 in
        program) command -v "$2" >/dev/null ;;
        header) echo "#include <$2>" | g++ -x c++ -I/usr/include/android -E - >/dev/null 2>&1 ;;
    esac
}

missing_packages() {
    echo "$dependencies" | while read -r package kind probe; do
        if [ -n "$package" ] && ! is_there "$kind" "$probe"; then
            echo "$package"
        fi
    done
}

install_dependencies() {
    local missing as_root=()
    missing=$(missing_packages)
    [ -n "$missing" ] || return 0
    if ! command -v apt-get >/dev/null; then
        echo "Missing (by the names of Debian's packages):" $missing >&2
        echo "Install them with this system's package manager, then call this again." >&2
        exit 1
    fi
    if [ "$(id -u)" -ne 0 ]; then
        as_root=(sudo)
    fi
    echo "Installing:" $missing
    "${as_root[@]}" apt-get update
    DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y --no-install-recommends $missing
    missing=$(missing_packages)
    if [ -n "$missing" ]; then
        echo "Still missing after the installation:" $missing >&2
        exit 1
    fi
}
