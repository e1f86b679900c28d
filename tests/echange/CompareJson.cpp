#include "Echange.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <fstream>

namespace
{
using nlohmann::json;

json Lit(const std::filesystem::path& p)
{
    std::ifstream in(p, std::ios::binary);
    json j = json::parse(in, nullptr, false);
    if (j.is_discarded())
        Echec(p.string() + ": not valid JSON");
    return j;
}

void Compare(const json& a, const json& b, const std::string& chemin, double tolerance)
{
    if (a.is_number() && b.is_number())
    {
        double x = a.get<double>(), y = b.get<double>();
        if (!(std::fabs(x - y) <= tolerance * std::max(std::fabs(x), std::fabs(y))))
            Echec(chemin + ": " + a.dump() + " and " + b.dump());
        return;
    }
    if (a.type() != b.type())
    {
        Echec(chemin + ": " + a.dump() + " and " + b.dump());
        return;
    }
    if (a.is_array())
    {
        if (a.size() != b.size())
            Echec(chemin + ": " + std::to_string(a.size()) + " and " + std::to_string(b.size()) + " items");
        for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
            Compare(a[i], b[i], chemin + "[" + std::to_string(i) + "]", tolerance);
    }
    else if (a.is_object())
    {
        for (auto it = a.begin(); it != a.end(); ++it)
            if (!b.contains(it.key()))
                Echec(chemin + "." + it.key() + ": missing in the second");
            else
                Compare(it.value(), b[it.key()], chemin + "." + it.key(), tolerance);
        for (auto it = b.begin(); it != b.end(); ++it)
            if (!a.contains(it.key()))
                Echec(chemin + "." + it.key() + ": missing in the first");
    }
    else if (a != b)
        Echec(chemin + ": " + a.dump() + " and " + b.dump());
}
} // namespace

void CompareJson(const std::filesystem::path& a, const std::filesystem::path& b, double tolerance)
{
    json ja = Lit(a), jb = Lit(b);
    if (!ja.is_discarded() && !jb.is_discarded())
        Compare(ja, jb, "$", tolerance);
}
