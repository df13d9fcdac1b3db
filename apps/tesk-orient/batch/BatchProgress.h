#pragma once

#include <cstddef>
#include <string>

namespace App {

/// How far a batch is.
struct BatchCounts {
    std::size_t total = 0;
    std::size_t done = 0;     ///< ended in this run, well or not
    std::size_t skipped = 0;  ///< in the results from before
    std::size_t failed = 0;   ///< of all, those from before included

    std::size_t left() const { return total - done - skipped; }
};

/// As "[#####     ] 512 of 1,024, 3 failed, 12.5/s, 41 s left", with a bar of this width or, with
/// 0, none.
std::string progressText(const BatchCounts& counts, double seconds, int width);

/// What a run did: one sentence with a line feed.
std::string summaryText(const BatchCounts& counts, double seconds);

/// A text of one line: control characters become \n, \x1b and so on.
std::string printable(const std::string& text);

/// Tells on standard error how a batch goes: on a terminal by a bar below the failures; elsewhere
/// by a line for each failure and one for the progress every ten seconds.
class BatchProgress {
 public:
    explicit BatchProgress(bool isWanted);
    /// The bar goes.
    ~BatchProgress();
    BatchProgress(const BatchProgress&) = delete;
    BatchProgress& operator=(const BatchProgress&) = delete;

    void failure(const std::string& text);

    /// As often as one likes; what has not changed or comes too soon is not shown.
    void show(const BatchCounts& counts, double seconds);

 private:
    void clearBar();

    bool m_isWanted;
    bool m_isTerminal;
    std::size_t m_barLength = 0;
    double m_shownAt;
};

}  // namespace App
