#include "Historique.h"

#include <prefa.h>

#include <cstdio>

namespace prefa_cli
{

namespace
{
std::string Format(const char* format, double v)
{
    char buf[64];
    std::snprintf(buf, sizeof buf, format, v);
    return buf;
}

// A CSV field: quoted, with quotes doubled, when it holds a separator, a quote or a line end.
std::string CsvField(const std::string& s)
{
    if (s.find_first_of(",\"\r\n") == std::string::npos)
        return s;
    std::string q = "\"";
    for (char c : s)
        q += c == '"' ? std::string("\"\"") : std::string(1, c);
    return q + "\"";
}
} // namespace

std::string HistoryTable(const FireInput& in, const FireResult& r, double every)
{
    std::string s = "\ntime history every " + Format("%g", every) + " min (" +
                    (r.rises ? "rise above ambient, K" : "degrees C") + ")\n\n";
    s += "     min";
    for (const Bar& b : in.bars)
        s += " " + std::string(b.name.size() < 9 ? 9 - b.name.size() : 0, ' ') + b.name;
    s += "\n";
    for (std::size_t k = 0; k < r.historyMinutes.size(); ++k)
    {
        s += Format("%8.1f", r.historyMinutes[k]);
        for (std::size_t b = 0; b < in.bars.size(); ++b)
            s += Format(" %9.1f", r.history[b][k]);
        s += "\n";
    }
    return s;
}

nlohmann::json HistoryJson(const FireInput& in, const FireResult& r, double every)
{
    nlohmann::json bars = nlohmann::json::array();
    for (std::size_t b = 0; b < in.bars.size(); ++b)
        bars.push_back({{"name", in.bars[b].name}, {"temperatures", r.history[b]}});
    return {{"every_minutes", every}, {"minutes", r.historyMinutes}, {"bars", bars}};
}

std::string HistoryCsv(const FireInput& in, const FireResult& r)
{
    std::string s = "minutes";
    for (const Bar& b : in.bars)
        s += "," + CsvField(b.name);
    s += "\n";
    for (std::size_t k = 0; k < r.historyMinutes.size(); ++k)
    {
        s += Format("%.6g", r.historyMinutes[k]);
        for (std::size_t b = 0; b < in.bars.size(); ++b)
            s += Format(",%.3f", r.history[b][k]);
        s += "\n";
    }
    return s;
}

} // namespace prefa_cli
