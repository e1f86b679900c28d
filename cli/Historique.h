// The time history of the bars (--every): every bar's temperature at each time, as a
// table for people, JSON and CSV for scripts.
#pragma once

#include "CalculFeu.h"

#include <nlohmann/json.hpp>

#include <string>

namespace prefa_cli
{

std::string HistoryTable(const FireInput& in, const FireResult& r, double every);
nlohmann::json HistoryJson(const FireInput& in, const FireResult& r, double every);
// "minutes,<bar>,<bar>..." then one line per time; names quoted when they need it.
std::string HistoryCsv(const FireInput& in, const FireResult& r);

} // namespace prefa_cli
