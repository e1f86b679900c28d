// A progress bar on standard error for calculations that take more than about a
// second; silent when standard error is not a terminal.
#pragma once

#include <chrono>
#include <string>

namespace prefa_cli
{

class ProgressBar
{
public:
    // enabled: false keeps it silent whatever the terminal (the --json mode of scripts).
    explicit ProgressBar(bool enabled);
    ~ProgressBar();
    // Reports the fraction done of the whole job, with a short label of the step.
    void Update(double fraction, const std::string& label);
    void Finish();

private:
    bool m_enabled;
    bool m_shown = false;
    int m_lastPermille = -1;
    std::chrono::steady_clock::time_point m_start;
};

} // namespace prefa_cli
