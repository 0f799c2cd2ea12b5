#include "formats/PrintableText.h"

#include <array>
#include <cstdio>

namespace formats {

namespace {

bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

bool Prints(int codePoint) {
    return codePoint >= 0x20 && !(codePoint >= 0x7F && codePoint < 0xA0)  // C0, delete, C1
           && !(codePoint >= 0x200B && codePoint <= 0x200F) &&
           !(codePoint >= 0x2028 && codePoint <= 0x202E) && !(codePoint >= 0x2060 && codePoint <= 0x206F) &&
           codePoint != 0xFEFF && !(codePoint >= 0xFFF9 && codePoint <= 0xFFFB);
}

}  // namespace

int TakeUtf8(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    constexpr std::array<int, 5> kLowest = {0, 0, 0x80, 0x800, 0x10000};
    int codePoint = length < 2 ? lead : lead & (0xFF >> (length + 1));
    bool good = length != 0 && length <= text.size();
    for (std::size_t i = 1; good && i < length; ++i) {
        good = IsContinuation(text[i]);
        codePoint = codePoint << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
    }
    const bool surrogate = codePoint >= 0xD800 && codePoint < 0xE000;
    good = good && codePoint >= kLowest[length] && codePoint <= 0x10FFFF && !surrogate;
    text.remove_prefix(good ? length : 1);
    return good ? codePoint : -1;
}

std::string Printable(std::string_view text) {
    std::string printable;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view before = rest;
        const int codePoint = TakeUtf8(rest);
        if (codePoint >= 0 && Prints(codePoint)) {
            printable += before.substr(0, before.size() - rest.size());
            continue;
        }
        std::array<char, 8> escape{};
        const auto number =
            static_cast<unsigned>(codePoint < 0 ? static_cast<unsigned char>(before[0]) : codePoint);
        std::snprintf(escape.data(), escape.size(),
                      number < 0x100 && codePoint < 0x80 ? "\\x%02X" : "\\u%04X", number);
        printable += escape.data();
    }
    return printable;
}

std::string Shortened(std::string_view text, std::size_t most) {
    constexpr std::string_view kGap = "...";
    if (text.size() <= most) {
        return std::string(text);
    }
    std::size_t head = (most - kGap.size() + 1) / 2;
    std::size_t tail = text.size() - (most - kGap.size() - head);
    while (head > 0 && IsContinuation(text[head])) {
        --head;
    }
    while (tail < text.size() && IsContinuation(text[tail])) {
        ++tail;
    }
    return std::string(text.substr(0, head)).append(kGap).append(text.substr(tail));
}

}  // namespace formats
