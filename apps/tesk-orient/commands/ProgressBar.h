#pragma once

namespace App {

/// A bar on standard error, where that is a terminal; gone again at the end.
class ProgressBar {
 public:
    explicit ProgressBar(bool isWanted);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void show(int percent);

 private:
    bool m_isShown;
};

}  // namespace App
