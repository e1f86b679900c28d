#include "Svg.h"

#include <prefa.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace prefa_cli
{

namespace
{
std::string Num(double v)
{
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.2f", v);
    return buf;
}

// A tick's value, as short as it reads.
std::string Tick(double v)
{
    char buf[32];
    std::snprintf(buf, sizeof buf, "%g", std::fabs(v) < 1e-9 ? 0.0 : v);
    return buf;
}

// Point where the level crosses the edge from a to b (values va, vb).
Point2 Cross(Point2 a, Point2 b, double va, double vb, double level)
{
    double t = (vb == va) ? 0.5 : (level - va) / (vb - va);
    return {a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)};
}
} // namespace

Box& Box::Add(const Contour& c)
{
    for (const Point2& p : c)
    {
        xmin = std::min(xmin, p.x), xmax = std::max(xmax, p.x);
        ymin = std::min(ymin, p.y), ymax = std::max(ymax, p.y);
    }
    return *this;
}

double SignedArea(const Contour& c)
{
    double a = 0;
    for (std::size_t k = 0; k < c.size(); ++k)
    {
        const Point2& p = c[k];
        const Point2& q = c[(k + 1) % c.size()];
        a += p.x * q.y - q.x * p.y;
    }
    return 0.5 * a;
}

std::string EscapeXml(const std::string& s)
{
    std::string out;
    for (char c : s)
    {
        switch (c)
        {
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '&': out += "&amp;"; break;
        case '"': out += "&quot;"; break;
        default: out += c;
        }
    }
    return out;
}

std::string ColourAt(double t)
{
    // Stops of a heat scale: cold blue, cyan, green, yellow, orange, red, white hot.
    static const double stops[][3] = {{0.10, 0.15, 0.55}, {0.10, 0.55, 0.85}, {0.20, 0.75, 0.45}, {0.95, 0.90, 0.25},
                                      {0.98, 0.60, 0.15}, {0.85, 0.15, 0.10}, {1.00, 0.95, 0.90}};
    const int n = 7;
    if (!(t >= 0))
        t = 0;
    if (t > 1)
        t = 1;
    double s = t * (n - 1);
    int k = std::min((int)s, n - 2);
    double f = s - k;
    char buf[8];
    int rgb[3];
    for (int c = 0; c < 3; ++c)
        rgb[c] = (int)std::lround(255.0 * (stops[k][c] + f * (stops[k + 1][c] - stops[k][c])));
    std::snprintf(buf, sizeof buf, "#%02x%02x%02x", rgb[0], rgb[1], rgb[2]);
    return buf;
}

std::vector<Segment> Isolines(const ScalarGrid& g, double level)
{
    std::vector<Segment> out;
    const std::size_t rows = g.ys.size(), cols = g.xs.size();
    for (std::size_t i = 0; i + 1 < rows; ++i)
    {
        for (std::size_t j = 0; j + 1 < cols; ++j)
        {
            // Corners in order round the square: (i,j), (i,j+1), (i+1,j+1), (i+1,j).
            const Point2 p[4] = {{g.xs[j], g.ys[i]}, {g.xs[j + 1], g.ys[i]}, {g.xs[j + 1], g.ys[i + 1]}, {g.xs[j], g.ys[i + 1]}};
            const double v[4] = {g.At(i, j), g.At(i, j + 1), g.At(i + 1, j + 1), g.At(i + 1, j)};
            if (std::isnan(v[0]) || std::isnan(v[1]) || std::isnan(v[2]) || std::isnan(v[3]))
                continue;
            int code = 0;
            for (int k = 0; k < 4; ++k)
                if (v[k] >= level)
                    code |= 1 << k;
            if (code == 0 || code == 15)
                continue;
            std::vector<Point2> crossings;
            for (int k = 0; k < 4; ++k)
            {
                int l = (k + 1) % 4;
                if (((code >> k) & 1) != ((code >> l) & 1))
                    crossings.push_back(Cross(p[k], p[l], v[k], v[l], level));
            }
            if (crossings.size() == 2)
                out.push_back({crossings[0], crossings[1]});
            else if (crossings.size() == 4)
            {
                // A saddle: the centre's mean decides how the four crossings pair up.
                double centre = 0.25 * (v[0] + v[1] + v[2] + v[3]);
                // When the centre is on corner 0's side, corners 0 and 2 join through it and
                // the lines cut off corners 1 and 3; otherwise they cut off corners 0 and 2.
                bool cornerZeroJoinsTwo = (centre >= level) == (((code >> 0) & 1) != 0);
                if (cornerZeroJoinsTwo)
                {
                    out.push_back({crossings[0], crossings[1]});
                    out.push_back({crossings[2], crossings[3]});
                }
                else
                {
                    out.push_back({crossings[3], crossings[0]});
                    out.push_back({crossings[1], crossings[2]});
                }
            }
        }
    }
    return out;
}

SvgPicture::SvgPicture(const Box& box, double margin, double widthPixels)
    : m_xmin(box.xmin - margin), m_ymin(box.ymin - margin), m_xmax(box.xmax + margin), m_ymax(box.ymax + margin),
      m_margin(40), m_legendWidth(150)
{
    double w = std::max(m_xmax - m_xmin, 1e-9), h = std::max(m_ymax - m_ymin, 1e-9);
    m_scale = std::min(widthPixels / w, 1.6 * widthPixels / h);
}

double SvgPicture::X(double x) const
{
    return m_margin + (x - m_xmin) * m_scale;
}

double SvgPicture::Y(double y) const
{
    return m_margin + 30 + (m_ymax - y) * m_scale;
}

void SvgPicture::Field(const ScalarGrid& g, double tmin, double tmax)
{
    std::string s = "<g id=\"field\" shape-rendering=\"crispEdges\">\n";
    double half = 0.5 * g.cell;
    double span = tmax > tmin ? tmax - tmin : 1;
    for (std::size_t i = 0; i < g.ys.size(); ++i)
        for (std::size_t j = 0; j < g.xs.size(); ++j)
        {
            double v = g.At(i, j);
            if (std::isnan(v))
                continue;
            double x0 = X(g.xs[j] - half), y0 = Y(g.ys[i] + half);
            s += "<rect x=\"" + Num(x0) + "\" y=\"" + Num(y0) + "\" width=\"" + Num(g.cell * m_scale + 0.3) +
                 "\" height=\"" + Num(g.cell * m_scale + 0.3) + "\" fill=\"" + ColourAt((v - tmin) / span) + "\"/>\n";
        }
    m_body += s + "</g>\n";
}

void SvgPicture::IsothermLines(const ScalarGrid& g, double step, double tmin, double tmax)
{
    std::string s = "<g id=\"isotherms\" stroke=\"#202020\" stroke-width=\"0.8\" fill=\"none\">\n";
    std::string labels = "<g id=\"isotherm-labels\" font-family=\"sans-serif\" font-size=\"11\" fill=\"#000\" "
                         "stroke=\"#fff\" stroke-width=\"3\" paint-order=\"stroke\" text-anchor=\"middle\">\n";
    std::vector<Point2> placed; // label centres, pixels
    const double cx = g.xs.empty() ? 0 : X(0.5 * (g.xs.front() + g.xs.back()));
    const double cy = g.ys.empty() ? 0 : Y(0.5 * (g.ys.front() + g.ys.back()));
    for (double level = std::ceil(tmin / step) * step; level <= tmax; level += step)
    {
        if (level <= tmin)
            continue;
        std::string d;
        const std::vector<Segment> segments = Isolines(g, level);
        for (const Segment& seg : segments)
            d += "M" + Num(X(seg.a.x)) + " " + Num(Y(seg.a.y)) + "L" + Num(X(seg.b.x)) + " " + Num(Y(seg.b.y));
        if (d.empty())
            continue;
        s += "<path class=\"isotherm\" data-level=\"" + Num(level) + "\" d=\"" + d + "\"/>\n";
        // The label goes on the segment nearest the middle that keeps clear of the others.
        double best = 1e300;
        Point2 at{0, 0};
        for (const Segment& seg : segments)
        {
            const Point2 m{0.5 * (X(seg.a.x) + X(seg.b.x)), 0.5 * (Y(seg.a.y) + Y(seg.b.y))};
            const double dist = std::hypot(m.x - cx, m.y - cy);
            bool clear = true;
            for (const Point2& p : placed)
                clear = clear && (std::fabs(p.x - m.x) > 30 || std::fabs(p.y - m.y) > 14);
            if (clear && dist < best)
                best = dist, at = m;
        }
        if (best == 1e300)
            continue;
        placed.push_back(at);
        labels += "<text class=\"isotherm-label\" x=\"" + Num(at.x) + "\" y=\"" + Num(at.y + 4) + "\">" + Tick(level) +
                  "</text>\n";
    }
    m_body += s + "</g>\n" + labels + "</g>\n";
}

void SvgPicture::Legend(double tmin, double tmax, double step, const std::string& title)
{
    double x = X(m_xmax) + 40, top = Y(m_ymax), height = std::max(200.0, Y(m_ymin) - top);
    std::string s = "<g id=\"legend\" font-family=\"sans-serif\" font-size=\"12\">\n";
    s += "<defs><linearGradient id=\"scale\" x1=\"0\" y1=\"1\" x2=\"0\" y2=\"0\">";
    for (int k = 0; k <= 10; ++k)
        s += "<stop offset=\"" + Num(k / 10.0) + "\" stop-color=\"" + ColourAt(k / 10.0) + "\"/>";
    s += "</linearGradient></defs>\n";
    s += "<text x=\"" + Num(x) + "\" y=\"" + Num(top - 10) + "\">" + EscapeXml(title) + "</text>\n";
    s += "<rect x=\"" + Num(x) + "\" y=\"" + Num(top) + "\" width=\"24\" height=\"" + Num(height) +
         "\" fill=\"url(#scale)\" stroke=\"#000\"/>\n";
    double span = tmax > tmin ? tmax - tmin : 1;
    for (double t = std::ceil(tmin / step) * step; t <= tmax + 1e-9; t += step)
    {
        double y = top + height * (1 - (t - tmin) / span);
        s += "<line x1=\"" + Num(x + 24) + "\" y1=\"" + Num(y) + "\" x2=\"" + Num(x + 30) + "\" y2=\"" + Num(y) +
             "\" stroke=\"#000\"/>";
        s += "<text x=\"" + Num(x + 34) + "\" y=\"" + Num(y + 4) + "\">" + Num(t).substr(0, Num(t).find('.')) + "</text>\n";
    }
    m_body += s + "</g>\n";
}

void SvgPicture::Outline(const Contour& c, const std::string& colour, double width, bool dashed)
{
    if (c.empty())
        return;
    std::string d;
    for (std::size_t k = 0; k < c.size(); ++k)
        d += (k ? "L" : "M") + Num(X(c[k].x)) + " " + Num(Y(c[k].y));
    m_body += "<path class=\"outline\" d=\"" + d + "Z\" fill=\"none\" stroke=\"" + colour + "\" stroke-width=\"" +
              Num(width) + "\"" + (dashed ? " stroke-dasharray=\"6 4\"" : "") + "/>\n";
}

void SvgPicture::Marker(const Label& l, const std::string& colour)
{
    double x = X(l.p.x), y = Y(l.p.y);
    m_body += "<g class=\"bar\"><circle cx=\"" + Num(x) + "\" cy=\"" + Num(y) + "\" r=\"5\" fill=\"" + colour +
              "\" stroke=\"#fff\" stroke-width=\"1.5\"/>";
    m_body += "<text x=\"" + Num(x + 8) + "\" y=\"" + Num(y - 8) +
              "\" font-family=\"sans-serif\" font-size=\"12\" font-weight=\"bold\" fill=\"#000\" stroke=\"#fff\" "
              "stroke-width=\"3\" paint-order=\"stroke\">" +
              EscapeXml(l.text) + "</text></g>\n";
}

void SvgPicture::Line(Point2 a, Point2 b, const std::string& colour, double width, bool dashed, const std::string& cls)
{
    m_body += "<line " + (cls.empty() ? std::string() : "class=\"" + cls + "\" ") + "x1=\"" + Num(X(a.x)) + "\" y1=\"" +
              Num(Y(a.y)) + "\" x2=\"" + Num(X(b.x)) + "\" y2=\"" + Num(Y(b.y)) + "\" stroke=\"" + colour +
              "\" stroke-width=\"" + Num(width) + "\"" + (dashed ? " stroke-dasharray=\"8 4 2 4\"" : "") + "/>\n";
}

void SvgPicture::Dimension(Point2 a, Point2 b, const std::string& text)
{
    const double xa = X(a.x), ya = Y(a.y), xb = X(b.x), yb = Y(b.y);
    const bool upright = std::fabs(yb - ya) > std::fabs(xb - xa);
    // Ticks across the line at both ends.
    auto tick = [&](double x, double y) {
        return upright ? "M" + Num(x - 5) + " " + Num(y) + "h10" : "M" + Num(x) + " " + Num(y - 5) + "v10";
    };
    m_body += "<g class=\"fibre\" font-family=\"sans-serif\" font-size=\"11\"><path d=\"M" + Num(xa) + " " +
              Num(ya) + "L" + Num(xb) + " " + Num(yb) + tick(xa, ya) + tick(xb, yb) +
              "\" stroke=\"#555555\" stroke-width=\"1\" fill=\"none\"/>";
    const double xm = (xa + xb) / 2, ym = (ya + yb) / 2;
    m_body += upright ? "<text x=\"" + Num(xm + 7) + "\" y=\"" + Num(ym + 4) + "\">"
                      : "<text x=\"" + Num(xm) + "\" y=\"" + Num(ym + 15) + "\" text-anchor=\"middle\">";
    m_body += EscapeXml(text) + "</text></g>\n";
}

void SvgPicture::Text(Point2 p, const std::string& text, double size, const std::string& anchor)
{
    m_body += "<text x=\"" + Num(X(p.x)) + "\" y=\"" + Num(Y(p.y)) + "\" font-family=\"sans-serif\" font-size=\"" +
              Num(size) + "\" text-anchor=\"" + anchor + "\">" + EscapeXml(text) + "</text>\n";
}

void SvgPicture::Title(const std::string& text)
{
    m_title = text;
}

double TickStep(double span, int count)
{
    if (!(span > 0))
        return 1;
    const double raw = span / count, p = std::pow(10.0, std::floor(std::log10(raw)));
    for (double m : {1.0, 2.0, 5.0})
        if (m * p >= raw)
            return m * p;
    return 10 * p;
}

void SvgPicture::TimeChart(const std::vector<double>& minutes, const std::vector<Series>& series, double initial,
                           const std::string& title, const std::string& yTitle)
{
    static const char* const colours[] = {"#1f77b4", "#d62728", "#2ca02c", "#ff7f0e", "#9467bd",
                                          "#8c564b", "#e377c2", "#17becf", "#bcbd22", "#7f7f7f"};
    const double top = std::max(Y(m_ymin) + m_margin, 300.0);
    const double left = m_margin + 60, width = 560, height = 260, plotTop = top + 50;
    double tmax = minutes.empty() ? 1 : minutes.back(), vmin = initial, vmax = initial + 1;
    for (const Series& s : series)
        for (double v : s.values)
            if (std::isfinite(v))
                vmin = std::min(vmin, v), vmax = std::max(vmax, v);
    const double xs = TickStep(tmax, 8), ys = TickStep(vmax - vmin, 6);
    tmax = std::ceil(tmax / xs - 1e-9) * xs;
    vmin = std::floor(vmin / ys) * ys;
    vmax = std::ceil(vmax / ys) * ys;
    auto px = [&](double t) { return left + width * t / tmax; };
    auto py = [&](double v) { return plotTop + height * (vmax - v) / (vmax - vmin); };

    std::string s = "<g id=\"history\" font-family=\"sans-serif\" font-size=\"12\">\n";
    s += "<text x=\"" + Num(m_margin) + "\" y=\"" + Num(top + 20) + "\" font-size=\"16\" font-weight=\"bold\">" +
         EscapeXml(title) + "</text>\n";
    s += "<g class=\"axes\" stroke=\"#000\" stroke-width=\"1\" fill=\"none\"><path d=\"M" + Num(left) + " " +
         Num(plotTop) + "V" + Num(plotTop + height) + "H" + Num(left + width) + "\"/></g>\n";
    for (double t = 0; t <= tmax + 1e-9; t += xs)
    {
        s += "<path d=\"M" + Num(px(t)) + " " + Num(plotTop) + "V" + Num(plotTop + height + 5) +
             "\" stroke=\"#ddd\"/><text class=\"tick-x\" x=\"" + Num(px(t)) + "\" y=\"" + Num(plotTop + height + 18) +
             "\" text-anchor=\"middle\">" + Tick(t) + "</text>\n";
    }
    for (double v = vmin; v <= vmax + 1e-9; v += ys)
    {
        s += "<path d=\"M" + Num(left - 5) + " " + Num(py(v)) + "H" + Num(left + width) +
             "\" stroke=\"#ddd\"/><text class=\"tick-y\" x=\"" + Num(left - 8) + "\" y=\"" + Num(py(v) + 4) +
             "\" text-anchor=\"end\">" + Tick(v) + "</text>\n";
    }
    s += "<text x=\"" + Num(left + width / 2) + "\" y=\"" + Num(plotTop + height + 38) +
         "\" text-anchor=\"middle\">time (min)</text>\n";
    s += "<text x=\"" + Num(left - 45) + "\" y=\"" + Num(plotTop - 12) + "\">" + EscapeXml(yTitle) + "</text>\n";
    for (std::size_t k = 0; k < series.size(); ++k)
    {
        const std::string colour = colours[k % 10];
        std::string points = Num(px(0)) + "," + Num(py(initial));
        std::string marks;
        for (std::size_t i = 0; i < series[k].values.size() && i < minutes.size(); ++i)
        {
            const std::string p = Num(px(minutes[i])) + "," + Num(py(series[k].values[i]));
            points += " " + p;
            if (minutes.size() <= 30)
                marks += "<circle cx=\"" + p.substr(0, p.find(',')) + "\" cy=\"" + p.substr(p.find(',') + 1) +
                         "\" r=\"3\" fill=\"" + colour + "\"/>";
        }
        s += "<polyline class=\"history-bar\" data-bar=\"" + EscapeXml(series[k].name) + "\" points=\"" + points +
             "\" fill=\"none\" stroke=\"" + colour + "\" stroke-width=\"2\"/>" + marks + "\n";
        const double ly = plotTop + 10 + 18 * (double)k;
        s += "<path d=\"M" + Num(left + width + 20) + " " + Num(ly) + "h24\" stroke=\"" + colour +
             "\" stroke-width=\"3\"/><text x=\"" + Num(left + width + 50) + "\" y=\"" + Num(ly + 4) + "\">" +
             EscapeXml(series[k].name) + "</text>\n";
    }
    m_body += s + "</g>\n";
    m_chartWidth = left + width + 50 + 120 + m_margin;
    m_chartHeight = std::max(50 + height + 60, 50 + 18.0 * (double)series.size() + 20);
}

std::string SvgPicture::Str() const
{
    double width = std::max(X(m_xmax) + m_legendWidth + m_margin, m_chartWidth);
    double height = std::max(Y(m_ymin) + m_margin, 300.0) + m_chartHeight;
    std::string s = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    s += "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + Num(width) + "\" height=\"" + Num(height) +
         "\" viewBox=\"0 0 " + Num(width) + " " + Num(height) + "\">\n";
    s += "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
    if (!m_title.empty())
        s += "<text x=\"" + Num(m_margin) + "\" y=\"24\" font-family=\"sans-serif\" font-size=\"16\" font-weight=\"bold\">" +
             EscapeXml(m_title) + "</text>\n";
    return s + m_body + "</svg>\n";
}

bool SvgPicture::Save(const std::string& path) const
{
    return SaveText(path, Str());
}

bool SaveText(const std::string& path, const std::string& text)
{
    CMirrorFile f;
    if (!f.Open(CString(AfxUtf8ToWide(path)), CFile::modeCreate | CFile::modeWrite))
        return false;
    try
    {
        for (std::size_t done = 0; done < text.size();)
        {
            const UINT n = (UINT)std::min<std::size_t>(text.size() - done, 1u << 20);
            f.Write(text.data() + done, n);
            done += n;
        }
        f.Close();
        return true;
    }
    catch (CException* e)
    {
        e->Delete();
        f.Abort();
        return false;
    }
}

} // namespace prefa_cli
