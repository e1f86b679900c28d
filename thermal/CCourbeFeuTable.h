// A fire curve given as points (minutes, degrees Celsius): a furnace record, a curve
// from the fire engineer. Linear between points; before the first point the first
// temperature and after the last one the last temperature hold, so callers check the
// table covers the fire (Fin).
#pragma once

#include "thermal/CCourbeFeu.h"

#include <vector>

class CCourbeFeuTable : public CCourbeFeu
{
public:
    struct Point
    {
        double minutes;
        double degres;
    };

    // An empty table (Definir before use): 20 degrees.
    CCourbeFeuTable() = default;

    // Takes the points; 1 when they are usable, 0 (and the table unchanged) when there is
    // none, a value is not finite, or the times do not strictly increase (Defaut tells
    // which point). The convection coefficient is in W/(m2 K), 25 as for the standard fire.
    int Definir(const std::vector<Point>& points, double convection = 25.0);
    // Index of the first point that breaks the rules above, -1 when none does.
    static int Defaut(const std::vector<Point>& points);

    double Temperature(double heures) const override;
    double Convection() const override { return m_convection; }
    // Time of the last point, minutes.
    double Fin() const { return m_points.empty() ? 0.0 : m_points.back().minutes; }
    const std::vector<Point>& Points() const { return m_points; }

private:
    std::vector<Point> m_points;
    double m_convection = 25.0;
};
