#include "record/internal/ReportParser.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "record/Report.h"
#include "record/internal/JsonTokens.h"

namespace record {

namespace {

/// Builds a document within bounds, and says where it ends being one.
// Nothing that an empty one makes can throw. NOLINTNEXTLINE(bugprone-exception-escape)
class Builder : public nlohmann::json_sax<Json> {
  public:
    bool null() override { return add(nullptr); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(std::int64_t value) override { return add(value); }
    bool number_unsigned(std::uint64_t value) override { return add(value); }
    bool number_float(float value, const std::string&) override { return add(value); }
    bool string(std::string& value) override { return add(std::move(value)); }
    bool binary(Json::binary_t&) override { return false; }
    bool start_object(std::size_t) override { return open(Json::object()); }
    bool start_array(std::size_t) override { return open(Json::array()); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool key(std::string& name) override {
        mValues += 2;
        mMember = &mOpen.back()->get_ref<Json::object_t&>()[name];
        return true;
    }
    bool parse_error(std::size_t position, const std::string&,
                     const nlohmann::detail::exception& error) override {
        constexpr int kNumberOverflow = 406;
        mError = error.id == kNumberOverflow ? "a number beyond all bounds" : "no JSON from here on";
        mPosition = position;
        return false;
    }

    /// @throws ReportError
    Json take(std::string_view text) {
        if (mTooDeep) {
            throw ReportError("/: expected at most " + std::to_string(kDeepestNesting) +
                              " lists and objects in each other, got more");
        }
        if (mTooLong) {
            throw ReportError("/: expected at most " + std::to_string(kMostReportElements) +
                              " elements in a list, got more");
        }
        if (mValues > kMostReportValues) {
            throw ReportError("/: expected at most " + std::to_string(kMostReportValues) +
                              " values, a member counted as three, got more");
        }
        if (!mError.empty()) {
            throw ReportError(JsonPlace(text, mPosition == 0 ? 0 : mPosition - 1) +
                              ": expected a report, got " + mError);
        }
        return std::move(mRoot);
    }

  private:
    Json& place(Json value) {
        if (mOpen.empty()) {
            return mRoot = std::move(value);
        }
        if (mOpen.back()->is_object()) {
            return *mMember = std::move(value);
        }
        return mOpen.back()->emplace_back(std::move(value));
    }
    bool admits() {
        mTooLong = !mOpen.empty() && mOpen.back()->is_array() && mOpen.back()->size() == kMostReportElements;
        return !mTooLong && ++mValues <= kMostReportValues;
    }
    bool add(Json value) {
        if (!admits()) {
            return false;
        }
        place(std::move(value));
        return true;
    }
    bool open(Json value) {
        mTooDeep = mOpen.size() == kDeepestNesting;
        if (mTooDeep || !admits()) {
            return false;
        }
        mOpen.push_back(&place(std::move(value)));
        return true;
    }
    bool close() {
        mOpen.pop_back();
        return true;
    }

    Json mRoot;
    std::vector<Json*> mOpen;
    Json* mMember = nullptr;  ///< whose value comes next
    std::size_t mValues = 0;
    std::string mError;
    std::size_t mPosition = 0;
    bool mTooDeep = false;
    bool mTooLong = false;
};

}  // namespace

Json ParseReport(std::string_view text) {
    if (const auto excess = FindJsonExcess(text)) {
        throw ReportError(JsonPlace(text, excess->position) + ": expected " + excess->expected +
                          ", got more");
    }
    Builder builder;
    Json::sax_parse(text, &builder);
    return builder.take(text);
}

}  // namespace record
