#include "analysis/InfluenceSearch.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <type_traits>
#include <utility>

namespace analysis {

namespace {

using virtualphone::PhoneDescription;

std::string Bytes(const auto& value) {
    static_assert(std::has_unique_object_representations_v<std::remove_cvref_t<decltype(value)>>,
                  "padding has no value that could be passed on");
    return {reinterpret_cast<const char*>(&value), sizeof value};
}

template <typename Value>
Value Take(std::string_view& bytes) {
    Value value{};
    const std::size_t size = std::min(sizeof value, bytes.size());
    std::memcpy(&value, bytes.data(), size);
    bytes.remove_prefix(size);
    return value;
}

}  // namespace

InfluenceSearch::InfluenceSearch(PhoneDescription phone, const record::BootRecord& boot,
                                 const std::vector<Input>& inputs, std::size_t step)
    : mPhone(std::move(phone)), mReference(boot) {
    mInfluence.phone = mPhone.name;
    mInfluence.step = step;
    for (const Input& input : inputs) {
        mInfluence.inputs.push_back({.input = input, .ranges = {}, .without = {}});
        mSearches.emplace_back(input.size, step);
    }
}

std::vector<std::string> InfluenceSearch::begin() {
    return {Bytes(Job{.what = Job::What::Unchanged})};
}

std::vector<std::string> InfluenceSearch::beginInput() {
    std::vector<std::string> jobs;
    if (!allBegun()) {
        const std::size_t input = mBegun++;
        if (mInfluence.inputs[input].input.kind != Input::Kind::Module) {
            jobs.push_back(Bytes(Job{.what = Job::What::Without, .input = input}));
        }
        const std::vector<std::string> next = nextJobs(input);
        jobs.insert(jobs.end(), next.begin(), next.end());
    }
    return jobs;
}

std::vector<std::string> InfluenceSearch::nextJobs(std::size_t input) {
    std::vector<std::string> jobs;
    for (const Stretch& stretch : mSearches[input].next()) {
        const bool oneIsEnough = mSearches[input].anyEffectDoes(stretch);
        jobs.push_back(Bytes(Job{.what = oneIsEnough ? Job::What::ChangeUntilEffect : Job::What::Change,
                                 .input = input,
                                 .stretch = stretch}));
    }
    return jobs;
}

std::string InfluenceSearch::work(const std::string& job, const BootPhone& boot) const {
    std::string_view bytes = job;
    const Job of = Take<Job>(bytes);
    std::size_t boots = 0;
    Effects effects;
    const auto count = [&](const PhoneDescription& phone) {
        ++boots;
        effects.merge(mReference.effectsIn(boot(phone)));
    };
    switch (of.what) {
        case Job::What::Unchanged:
            count(mPhone);
            break;
        case Job::What::Change:
        case Job::What::ChangeUntilEffect:
            for (const Pattern pattern : kPatterns) {
                const bool enough = of.what == Job::What::ChangeUntilEffect && !effects.empty();
                if (!enough && IsWorthTrying(pattern, of.stretch, effects)) {
                    count(WithChange(mPhone, mInfluence.inputs[of.input].input, of.stretch, pattern));
                }
            }
            break;
        case Job::What::Without:
            for (const PhoneDescription& phone : Without(mPhone, mInfluence.inputs[of.input].input)) {
                count(phone);
            }
            break;
    }
    return job + Bytes(boots) + EffectBytes(effects);
}

std::vector<std::string> InfluenceSearch::take(std::string_view result) {
    const Job job = Take<Job>(result);
    mInfluence.boots += Take<std::size_t>(result);
    Effects effects = ReadEffectBytes(result);
    for (const Effect& effect : mInfluence.unsteady) {
        effects.erase(effect);
    }
    switch (job.what) {
        case Job::What::Unchanged:
            mInfluence.unsteady = std::move(effects);
            return {};
        case Job::What::Without:
            mInfluence.inputs[job.input].without = mInfluence.sets.numberOf(effects);
            return {};
        case Job::What::Change:
        case Job::What::ChangeUntilEffect:
            mSearches[job.input].take(job.stretch, mInfluence.sets.numberOf(effects));
            break;
    }
    return nextJobs(job.input);
}

std::size_t InfluenceSearch::bytes() const {
    std::size_t bytes = 0;
    for (const InputInfluence& of : mInfluence.inputs) {
        bytes += of.input.size;
    }
    return bytes;
}

std::size_t InfluenceSearch::settledBytes() const {
    std::size_t bytes = 0;
    for (const StretchSearch& search : mSearches) {
        bytes += search.settledBytes();
    }
    return bytes;
}

Influence InfluenceSearch::influence(bool complete) const {
    Influence influence = mInfluence;
    influence.complete = complete;
    for (std::size_t i = 0; i < mSearches.size(); ++i) {
        influence.inputs[i].ranges = mSearches[i].ranges();
    }
    return influence;
}

}  // namespace analysis
