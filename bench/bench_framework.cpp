// What the framework layer costs the library's files and messages: archive scalars
// (the temperature grids are doubles), object graphs, text lines and Format.
// --quick runs a short smoke pass.
#include "framework/Framework.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

namespace
{
class CBenchItem : public CObject
{
    DECLARE_SERIAL(CBenchItem)
public:
    LONG m_n = 0;
    double m_d = 0.0;
    CBenchItem* m_pPrevious = nullptr;
    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring())
            ar << m_n << m_d << m_pPrevious;
        else
            ar >> m_n >> m_d >> m_pPrevious;
    }
};

template <class F>
double Seconds(F&& f)
{
    const auto start = std::chrono::steady_clock::now();
    f();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void Report(const char* what, double count, const char* unit, double seconds)
{
    std::printf("%-44s %12.0f %-8s %8.3f s  %14.0f %s/s\n", what, count, unit, seconds, count / seconds, unit);
}

volatile double g_sink = 0.0; // keeps the optimiser from dropping results
} // namespace

IMPLEMENT_SERIAL(CBenchItem, CObject, 1)

int main(int argc, char** argv)
{
    const bool quick = argc > 1 && std::strcmp(argv[1], "--quick") == 0;
    const long nDoubles = quick ? 10000 : 20000000;
    const long nObjects = quick ? 1000 : 1000000;
    const long nFormats = quick ? 1000 : 1000000;
    const long nLines = quick ? 1000 : 1000000;
    std::printf("bench_framework: %u hardware threads (single-threaded measurements)\n",
                std::thread::hardware_concurrency());

    // Doubles through the archive, in memory.
    CMemFile file;
    double t = Seconds([&] {
        CArchive ar(&file, CArchive::store);
        for (long i = 0; i < nDoubles; ++i)
            ar << (double)i;
        ar.Close();
    });
    Report("archive: store doubles", (double)nDoubles, "values", t);
    t = Seconds([&] {
        CMemFile in(file.GetData());
        CArchive ar(&in, CArchive::load);
        double sum = 0.0, d;
        for (long i = 0; i < nDoubles; ++i)
        {
            ar >> d;
            sum += d;
        }
        g_sink = g_sink + sum;
    });
    Report("archive: load doubles", (double)nDoubles, "values", t);

    // A list of objects, each pointing back at the one before.
    std::vector<std::unique_ptr<CBenchItem>> items;
    CObList list;
    for (long i = 0; i < nObjects; ++i)
    {
        items.emplace_back(new CBenchItem);
        items.back()->m_n = i;
        items.back()->m_pPrevious = i ? items[(std::size_t)i - 1].get() : nullptr;
        list.AddTail(items.back().get());
    }
    CMemFile objects;
    t = Seconds([&] {
        CArchive ar(&objects, CArchive::store);
        list.Serialize(ar);
        ar.Close();
    });
    Report("archive: store objects (with back-references)", (double)nObjects, "objects", t);
    CObList back;
    t = Seconds([&] {
        CMemFile in(objects.GetData());
        CArchive ar(&in, CArchive::load);
        back.Serialize(ar);
    });
    Report("archive: load objects (with back-references)", (double)nObjects, "objects", t);
    while (!back.IsEmpty())
        delete back.RemoveHead();

    // Text lines.
    CMemFile text;
    t = Seconds([&] {
        CArchive ar(&text, CArchive::store);
        for (long i = 0; i < nLines; ++i)
            ar.WriteString(L"P12 ; 5.500 ; 0.300 ; B25\r\n");
        ar.Close();
    });
    Report("archive: WriteString lines", (double)nLines, "lines", t);
    t = Seconds([&] {
        CMemFile in(text.GetData());
        CArchive ar(&in, CArchive::load);
        CString line;
        long n = 0;
        while (ar.ReadString(line))
            n += line.GetLength();
        g_sink = g_sink + n;
    });
    Report("archive: ReadString lines", (double)nLines, "lines", t);

    // Format, as the file names and messages use it.
    const CString root(L"C:\\BRAXEL\\DATA"), study(L"ETUDE01");
    t = Seconds([&] {
        CString s;
        for (long i = 0; i < nFormats; ++i)
        {
            s.Format(L"%s\\%s\\TEMPER.%2.2d", root, study, (int)(i % 100));
            g_sink = g_sink + s.GetLength();
        }
    });
    Report("Format: file name (%s %s %2.2d)", (double)nFormats, "calls", t);
    t = Seconds([&] {
        CString s;
        for (long i = 0; i < nFormats; ++i)
        {
            s.Format(L"%I64d - %S - %.3f", (LONGLONG)i, "ENOENT", i * 0.5);
            g_sink = g_sink + s.GetLength();
        }
    });
    Report("Format: framework spellings (%I64d %S %.3f)", (double)nFormats, "calls", t);
    return 0;
}
