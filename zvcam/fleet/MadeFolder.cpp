#include "zvcam/fleet/MadeFolder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <tuple>
#include <utility>

#include <nlohmann/json.hpp>

#include "formats/Hex.h"
#include "virtualphone/PhoneFile.h"
#include "zvcam/fleet/Csv.h"

namespace zvcam {

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;
using Json = nlohmann::ordered_json;
using virtualphone::PhoneDescription;

constexpr std::uint64_t kPhonesInFolder = 1000;
constexpr const char* kList = "phones.txt";
constexpr const char* kTroubled = "troubled.csv";
constexpr const char* kMade = "made.csv";

[[noreturn]] void ThrowUnwritable(const fs::path& path, int error) {
    throw std::runtime_error("cannot write " + path.string() + ": " + std::generic_category().message(error));
}

template <typename Content>
void Write(const fs::path& path, const Content& content) {
    errno = 0;
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(content.data()), static_cast<std::streamsize>(content.size()));
    if (!file.flush()) {
        ThrowUnwritable(path, errno);
    }
}

void MakeFolder(const fs::path& path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (error) {
        ThrowUnwritable(path, error.value());
    }
}

/// "phones/012/012345.json".
std::string PathOf(std::uint64_t number) {
    std::array<char, 64> path;
    std::snprintf(path.data(), path.size(), "phones/%03llu/%06llu.json",
                  static_cast<unsigned long long>(number / kPhonesInFolder),
                  static_cast<unsigned long long>(number));
    return path.data();
}

/// How a phone file says these bytes.
Json ContentJson(const Bytes& bytes) {
    PhoneDescription phone;
    phone.files["/x"] = bytes;
    return Json::parse(virtualphone::PhoneFileText(phone))["files"]["/x"];
}

/// How a phone file says a memory that is that of a side file but for some bytes.
Json MemoryJson(const Bytes& image, const Bytes& shared, const std::string& name) {
    // An erased one would differ all over.
    if (std::equal(image.begin() + 1, image.end(), image.begin())) {
        return {{"fill", image[0]}};
    }
    Json memory = {{"file", name}};
    auto [start, other] = std::mismatch(image.begin(), image.end(), shared.begin());
    while (start != image.end()) {
        auto end = start;
        while (end != image.end() && *end != *other) {
            ++end;
            ++other;
        }
        memory["bytes"][std::to_string(start - image.begin())] = formats::UpperHex(Bytes(start, end));
        std::tie(start, other) = std::mismatch(end, image.end(), other);
    }
    return memory;
}

/// Whether a content is worth a side file.
bool IsLong(const Bytes& bytes) {
    constexpr std::size_t kLong = 512;
    return bytes.size() > kLong && ContentJson(bytes).dump().size() > kLong;
}

/// A folder whose content disappears again unless it is kept.
class NewFolder {
  public:
    /// @throws std::runtime_error for one that exists and is not empty.
    explicit NewFolder(fs::path path) : mPath(std::move(path)) {
        std::error_code error;
        mExisted = fs::exists(mPath, error);
        if (mExisted && !fs::is_empty(mPath, error)) {
            throw std::runtime_error("cannot write " + mPath.string() + ": it exists and is not empty");
        }
    }
    ~NewFolder() {
        if (mKept) {
            return;
        }
        std::error_code ignored;
        for (const char* const made : {"phones", "common", kList, kTroubled, kMade}) {
            fs::remove_all(mPath / made, ignored);
        }
        if (!mExisted) {
            fs::remove(mPath, ignored);
        }
    }
    NewFolder(const NewFolder&) = delete;
    NewFolder& operator=(const NewFolder&) = delete;

    fs::path operator/(const std::string& name) const { return mPath / name; }
    void keep() { mKept = true; }

  private:
    fs::path mPath;
    bool mExisted = false;
    bool mKept = false;
};

}  // namespace

struct MadeFolder::State {
    State(fs::path target, const PhoneDescription& phone) : folder(std::move(target)), like(phone) {
        MakeFolder(folder / "common");
        // The paths are those that a phone file has to name.
        const std::string up = "../../";
        virtualphone::SideFiles names;
        for (std::size_t i = 0; i < like.sensors.size(); ++i) {
            const std::string name = "common/sensor" + std::to_string(i) + ".eeprom";
            memoryNames.push_back(up + name);
            if (like.sensors[i].eeprom) {
                Write(folder / name, like.sensors[i].eeprom->image);
                names.memories[tables::SensorIndex{static_cast<int>(i)}] = memoryNames.back();
            }
        }
        for (const auto& [path, bytes] : like.files) {
            if (IsLong(bytes)) {
                const std::string name = "common/file" + std::to_string(names.files.size());
                Write(folder / name, bytes);
                names.files[path] = up + name;
            }
        }
        pattern = Json::parse(virtualphone::PhoneFileText(like, names));
        list.open(folder / kList, std::ios::binary);
        troubled.open(folder / kTroubled, std::ios::binary);
        troubled << "path,trouble,place\n";
    }

    std::string textOf(const PhoneDescription& phone) const {
        Json json = pattern;
        json["name"] = phone.name;
        for (const auto& [path, bytes] : like.files) {
            const auto file = phone.files.find(path);
            if (file == phone.files.end()) {
                json["files"].erase(path);
            } else if (file->second != bytes) {
                json["files"][path] = ContentJson(file->second);
            }
        }
        Json& sensors = json["sensors"];
        while (sensors.size() > phone.sensors.size()) {
            sensors.erase(sensors.size() - 1);
        }
        for (std::size_t i = 0; i < phone.sensors.size(); ++i) {
            const auto& memory = phone.sensors[i].eeprom;
            if (memory && memory != like.sensors[i].eeprom) {
                sensors[i]["eeprom"] =
                    MemoryJson(memory->image, like.sensors[i].eeprom->image, memoryNames[i]);
                if (memory->readReturns) {
                    sensors[i]["eeprom"]["readReturns"] = *memory->readReturns;
                }
            }
        }
        return json.dump() + "\n";
    }

    NewFolder folder;
    const PhoneDescription& like;
    std::vector<std::string> memoryNames;  ///< by sensor index
    Json pattern;                          ///< the phone file of `like`
    std::ofstream list;
    std::ofstream troubled;
    std::vector<std::size_t> counts = std::vector<std::size_t>(Troubles().size(), 0);
};

MadeFolder::MadeFolder(fs::path folder, const PhoneDescription& like)
    : mState(std::make_unique<State>(std::move(folder), like)) {}

MadeFolder::~MadeFolder() = default;

void MadeFolder::add(std::uint64_t number, const MadePhone& made) {
    const std::string path = PathOf(number);
    if (number % kPhonesInFolder == 0 || !mState->list.tellp()) {
        MakeFolder((mState->folder / path).parent_path());
    }
    std::string text = mState->textOf(made.phone);
    text.resize(made.cut ? text.size() / 2 : text.size());
    Write(mState->folder / path, text);
    mState->list << path << '\n';
    if (made.trouble) {
        ++mState->counts[*made.trouble];
        mState->troubled << path << ',' << Troubles()[*made.trouble].name << ',' << CsvCell(made.where)
                         << '\n';
    }
}

std::vector<std::size_t> MadeFolder::finish(const std::vector<TroubleRate>& rates) {
    std::string table = "trouble,phones,query\n";
    std::vector<std::size_t> counts;
    for (const TroubleRate& rate : rates) {
        const Trouble& trouble = Troubles()[rate.trouble];
        counts.push_back(mState->counts[rate.trouble]);
        table += trouble.name + ("," + std::to_string(counts.back())) + "," + CsvCell(trouble.query) + "\n";
    }
    Write(mState->folder / kMade, table);
    errno = 0;
    for (const auto& [file, name] :
         {std::pair(&mState->list, kList), std::pair(&mState->troubled, kTroubled)}) {
        if (!file->flush()) {
            ThrowUnwritable(mState->folder / name, errno);
        }
    }
    mState->folder.keep();
    return counts;
}

}  // namespace zvcam
