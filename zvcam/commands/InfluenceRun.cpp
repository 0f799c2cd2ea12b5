#include "zvcam/commands/InfluenceRun.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "supervisor/BootPool.h"
#include "zvcam/commands/Progress.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

using analysis::Effects;
using analysis::Input;
using analysis::Stretch;
using virtualphone::PhoneDescription;

/// What a worker is to try.
struct Job {
    enum class What : std::uint8_t { Unchanged, Change, Without };
    What what = What::Unchanged;
    bool anyEffect = false;  ///< one is enough
    std::size_t input = 0;
    Stretch stretch = {};
};

std::string Bytes(const auto& value) {
    return {reinterpret_cast<const char*>(&value), sizeof value};
}

template <typename Value>
Value Take(std::string_view& bytes) {
    Value value{};
    std::memcpy(&value, bytes.data(), std::min(sizeof value, bytes.size()));
    bytes.remove_prefix(std::min(sizeof value, bytes.size()));
    return value;
}

/// The phone, how it comes out unchanged, and what about it can be changed.
struct Subject {
    PhoneDescription phone;
    record::BootRecord boot;
    std::vector<Input> inputs;
};

/// What a worker makes of a job: the job, the number of boots, and their effects.
std::string Try(const Subject& subject, const analysis::Reference& reference, const std::string& text,
                supervisor::Booter& booter) {
    std::string_view bytes = text;
    const Job job = Take<Job>(bytes);
    std::size_t boots = 0;
    Effects effects;
    const auto boot = [&](const PhoneDescription& phone) {
        ++boots;
        effects.merge(reference.effectsIn(booter.boot(phone)));
    };
    switch (job.what) {
        case Job::What::Unchanged:
            boot(subject.phone);
            break;
        case Job::What::Change:
            for (const analysis::Pattern pattern : analysis::kPatterns) {
                const bool enough = job.anyEffect && !effects.empty();
                if (!enough && IsWorthTrying(pattern, job.stretch, effects)) {
                    boot(WithChange(subject.phone, subject.inputs[job.input], job.stretch, pattern));
                }
            }
            break;
        case Job::What::Without:
            for (const PhoneDescription& phone : Without(subject.phone, subject.inputs[job.input])) {
                boot(phone);
            }
            break;
    }
    return text + Bytes(boots) + EffectBytes(effects);
}

/// "back main" of "back_main".
std::string ModuleName(std::string name) {
    std::replace(name.begin(), name.end(), '_', ' ');
    return name;
}

std::vector<Input> ChosenInputs(const Subject& subject, const std::string& module) {
    std::vector<Input> inputs = analysis::InputsOf(subject.phone, subject.boot);
    if (module.empty()) {
        return inputs;
    }
    std::vector<std::string> names;
    for (const Input& input : inputs) {
        if (input.kind == Input::Kind::Module && input.name == ModuleName(module)) {
            return {input};
        }
        if (input.kind == Input::Kind::Module) {
            names.push_back(input.name);
        }
    }
    throw std::runtime_error("no module \"" + Printable(module) + "\" has a memory that can be read; " +
                             (names.empty() ? "none has one" : "there are " + Listed(names)));
}

Subject MakeSubject(PhoneDescription phone, const InfluenceRunOptions& options) {
    Subject subject;
    subject.boot = supervisor::Boot(phone, options.boot);
    subject.phone = std::move(phone);
    subject.inputs = ChosenInputs(subject, options.module);
    return subject;
}

}  // namespace

struct InfluenceRun::State {
    State(PhoneDescription phone, const InfluenceRunOptions& options)
        : subject(MakeSubject(std::move(phone), options)),
          reference(subject.boot),
          pool({.boot = options.boot}, [this](const std::string& job, supervisor::Booter& booter) {
              return Try(subject, reference, job, booter);
          }) {
        influence.phone = subject.phone.name;
        influence.step = options.step;
        for (const Input& input : subject.inputs) {
            influence.inputs.push_back({.input = input, .ranges = {}, .without = {}});
            searches.emplace_back(input.size, options.step);
        }
    }

    void add(const Job& job) { pool.add(job.input, Bytes(job)); }

    void askAbout(std::size_t input) {
        for (const Stretch& stretch : searches[input].next()) {
            add({.what = Job::What::Change,
                 .anyEffect = searches[input].anyEffectDoes(stretch),
                 .input = input,
                 .stretch = stretch});
        }
    }

    void begin(std::size_t input) {
        if (subject.inputs[input].kind != Input::Kind::Module) {
            add({.what = Job::What::Without, .input = input});
        }
        askAbout(input);
    }

    /// The next result.
    /// @return false when there is none, or the program is to end.
    bool take() {
        const std::optional<supervisor::PoolResult> result = pool.next();
        if (!result) {
            return false;
        }
        if (!result->error.empty()) {
            throw std::runtime_error("a boot could not be made: " + result->error);
        }
        std::string_view bytes = result->text;
        const Job job = Take<Job>(bytes);
        influence.boots += Take<std::size_t>(bytes);
        Effects effects = analysis::ReadEffectBytes(bytes);
        for (const analysis::Effect& effect : influence.unsteady) {
            effects.erase(effect);
        }
        if (job.what == Job::What::Unchanged) {
            influence.unsteady = std::move(effects);
        } else if (job.what == Job::What::Without) {
            influence.inputs[job.input].without = influence.sets.numberOf(effects);
        } else {
            searches[job.input].take(job.stretch, influence.sets.numberOf(effects));
            askAbout(job.input);
        }
        return true;
    }

    std::size_t settledBytes() const {
        std::size_t bytes = 0;
        for (const analysis::StretchSearch& search : searches) {
            bytes += search.settledBytes();
        }
        return bytes;
    }

    Subject subject;
    analysis::Reference reference;
    std::vector<analysis::StretchSearch> searches;  ///< of the inputs
    analysis::Influence influence;
    supervisor::BootPool pool;  ///< its workers are made of all that stands above
};

InfluenceRun::InfluenceRun(PhoneDescription phone, const InfluenceRunOptions& options)
    : mState(std::make_unique<State>(std::move(phone), options)) {}

InfluenceRun::~InfluenceRun() = default;

const record::BootRecord& InfluenceRun::unchanged() const {
    return mState->subject.boot;
}

analysis::Influence InfluenceRun::find() {
    State& state = *mState;
    std::size_t total = 0;
    for (const Input& input : state.subject.inputs) {
        total += input.size;
    }
    Progress progress("bytes", total, /*quiet=*/false);
    state.add({.what = Job::What::Unchanged});
    bool going = state.take();
    std::size_t begun = 0;
    std::size_t shown = 0;
    while (going) {
        // One input after the other, so that a search that is stopped knows all of the first ones.
        while (begun < state.searches.size() && state.pool.wantsJobs()) {
            state.begin(begun++);
        }
        if (state.pool.pending() == 0) {
            break;
        }
        going = state.take();
        const std::size_t settled = std::max(state.settledBytes(), shown);
        progress.advance(settled - shown);
        shown = settled;
    }
    // What was done when a signal stopped the pool has come, and there is no more.
    state.influence.complete = going && !state.pool.stopped();
    for (std::size_t i = 0; i < state.searches.size(); ++i) {
        state.influence.inputs[i].ranges = state.searches[i].ranges();
    }
    return std::move(state.influence);
}

}  // namespace zvcam
