#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/Influence.h"

namespace analysis {

/// Which boots to make in order to find out which inputs decide, and what they show.
///
/// A search hands out jobs. A job is done with some boots, by whom and where the caller decides: job and
/// result are bytes for any process of the same program that has a copy of the search as it was made.
///
///     InfluenceSearch search(phone, boot, InputsOf(phone, boot), 16);
///     std::vector<std::string> jobs = search.begin();
///     while (!jobs.empty() || !search.allBegun()) {
///         if (jobs.empty()) { jobs = search.beginInput(); }
///         for (const std::string& job : std::exchange(jobs, {})) {
///             const std::vector<std::string> next = search.take(search.work(job, bootPhone));
///             jobs.insert(jobs.end(), next.begin(), next.end());
///         }
///     }
class InfluenceSearch {
  public:
    using BootPhone = std::function<record::BootRecord(const virtualphone::PhoneDescription&)>;

    /// @param boot of the unchanged phone; outlives the search.
    /// @param inputs of the phone, those that count.
    /// @param step bytes that are changed at once before single ones, at least 1.
    InfluenceSearch(virtualphone::PhoneDescription phone, const record::BootRecord& boot,
                    const std::vector<Input>& inputs, std::size_t step);

    /// The first jobs, whose results are taken before any other is handed out: what differs between two boots
    /// of the unchanged phone.
    std::vector<std::string> begin();

    /// The first jobs of the next input; none once all have begun.
    std::vector<std::string> beginInput();
    bool allBegun() const { return mBegun == mSearches.size(); }

    /// Does a job. Changes nothing of the search.
    /// @return the result.
    std::string work(const std::string& job, const BootPhone& boot) const;

    /// Takes a result.
    /// @return the jobs that follow from it; none where others have to be taken before.
    std::vector<std::string> take(std::string_view result);

    /// Bytes of all inputs, and those about which nothing more will be asked, as far as is known.
    std::size_t bytes() const;
    std::size_t settledBytes() const;

    /// What is known.
    /// @param complete false: the search was stopped.
    Influence influence(bool complete) const;

  private:
    struct Job {
        /// As wide as the other members, between which no padding is to come.
        enum class What : std::size_t {
            Unchanged,
            Change,
            ChangeUntilEffect,  ///< one effect is enough
            Without
        };
        What what = What::Unchanged;
        std::size_t input = 0;
        Stretch stretch = {};
    };
    std::vector<std::string> nextJobs(std::size_t input);

    virtualphone::PhoneDescription mPhone;
    Reference mReference;
    std::vector<StretchSearch> mSearches;  ///< of the inputs
    std::size_t mBegun = 0;                ///< inputs
    Influence mInfluence;
};

}  // namespace analysis
