// Points, segments, frames, contours and lists of contours (the first byte chooses),
// then the first queries a caller makes of a loaded contour: extents, area and
// orientation, rectangle test, containment and centre.
#include "Fuzz.h"

namespace
{
void Interroge(CPolygone& p)
{
    p.g_Xmin();
    p.Surface(true);
    p.g_ImpactX();
    p.g_ImpactY();
    p.EstRectangle();
    if (p.GetCount() >= 3)
        p.AppartientAPolygone(p.DonneCdg(), 0.0);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    prefa_fuzz::Prepare();
    if (size == 0)
        return 0;
    const std::uint8_t genre = data[0] % 5;
    ++data;
    --size;
    switch (genre)
    {
    case 0: { CPointD p; prefa_fuzz::Charge(data, size, [&](CArchive& ar) { p.Serialize(ar); }); break; }
    case 1: { CVecteur v; prefa_fuzz::Charge(data, size, [&](CArchive& ar) { v.Serialize(ar); }); break; }
    case 2: { CRepere r; prefa_fuzz::Charge(data, size, [&](CArchive& ar) { r.Serialize(ar); }); break; }
    case 3:
    {
        CPolygone p;
        if (prefa_fuzz::Charge(data, size, [&](CArchive& ar) { p.Serialize(ar); }))
            prefa_fuzz::Interroge([&] { Interroge(p); });
        break;
    }
    default:
    {
        CListePolygone l;
        if (prefa_fuzz::Charge(data, size, [&](CArchive& ar) { l.Serialize(ar); }))
            for (POSITION pos = l.GetHeadPosition(); pos;)
            {
                CPolygone* p = l.GetNext(pos);
                prefa_fuzz::Interroge([&] { Interroge(*p); });
            }
        break;
    }
    }
    return 0;
}
