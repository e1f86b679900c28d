// A small application written the way the suite's programs are: a document of beams
// in a typed list, time stamps, notes, TRY/CATCH around its files.
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace prefa_test;

namespace
{
class CPoutre : public CObject
{
    DECLARE_SERIAL(CPoutre)
public:
    CString m_strNom;
    double m_dLongueur = 0.0;
    long m_nRepere = 0; // the application's own long: 4 bytes in the file
    CTime m_dateCreation;
    CPoutre* m_pAppui = nullptr; // the beam this one rests on, if any

    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring())
            ar << m_strNom << m_dLongueur << m_nRepere << m_dateCreation << m_pAppui;
        else
            ar >> m_strNom >> m_dLongueur >> m_nRepere >> m_dateCreation >> m_pAppui;
    }
};

class CDocumentPoutres : public CObject
{
    DECLARE_SERIAL(CDocumentPoutres)
public:
    CTypedPtrList<CObList, CPoutre*> m_poutres;
    CStringArray m_notes;
    CTime m_dateEnregistrement;

    ~CDocumentPoutres() override { DeleteContents(); }

    void DeleteContents()
    {
        while (!m_poutres.IsEmpty())
            delete m_poutres.RemoveHead();
        m_notes.RemoveAll();
    }

    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring())
            ar << (DWORD)1 << m_dateEnregistrement;
        else
        {
            DWORD version;
            ar >> version >> m_dateEnregistrement;
        }
        m_poutres.Serialize(ar);
        m_notes.Serialize(ar);
    }

    BOOL OnSaveDocument(LPCTSTR lpszPathName)
    {
        CMirrorFile file;
        CFileException fe;
        if (!file.Open(lpszPathName, CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive, &fe))
        {
            fe.ReportError();
            return FALSE;
        }
        TRY
        {
            CArchive ar(&file, CArchive::store);
            Serialize(ar);
            ar.Close();
            file.Close();
        }
        CATCH_ALL (e)
        {
            file.Abort();
            e->ReportError();
            return FALSE;
        }
        END_CATCH_ALL
        return TRUE;
    }

    BOOL OnOpenDocument(LPCTSTR lpszPathName)
    {
        CFile file;
        CFileException fe;
        if (!file.Open(lpszPathName, CFile::modeRead | CFile::shareDenyWrite, &fe))
        {
            fe.ReportError();
            return FALSE;
        }
        DeleteContents();
        TRY
        {
            CArchive ar(&file, CArchive::load);
            Serialize(ar);
        }
        CATCH (CArchiveException, e)
        {
            // Beams read before the fault are in the list: they go with the rest.
            DeleteContents();
            e->ReportError();
            return FALSE;
        }
        END_CATCH
        return TRUE;
    }
};
} // namespace

IMPLEMENT_SERIAL(CPoutre, CObject, 1)
IMPLEMENT_SERIAL(CDocumentPoutres, CObject, 1)

TEST(Caller, ADocumentOfBeamsIsSavedAndReadBackAsTheFrameworkWritesIt)
{
    const CTime t1((__time64_t)1700000000LL), t2((__time64_t)1700003600LL), saved((__time64_t)1700007200LL);
    CDocumentPoutres doc;
    doc.m_dateEnregistrement = saved;
    const wchar_t* names[] = {L"P1", L"P2", L"P3"};
    for (int i = 0; i < 3; ++i)
    {
        CPoutre* p = new CPoutre;
        p->m_strNom = names[i];
        p->m_dLongueur = 5.5 + i * 0.5;
        p->m_nRepere = i + 1;
        p->m_dateCreation = i < 2 ? t1 : t2;
        doc.m_poutres.AddTail(p);
    }
    doc.m_poutres.GetTail()->m_pAppui = doc.m_poutres.GetHead();
    CString note;
    note.Format(L"%I64d s, %S", (t2 - t1).GetTotalSeconds(), "r\xE9vis\xE9");
    doc.m_notes.Add(note);
    doc.m_notes.Add(CTimeSpan(0, 1, 0, 0).Format(L"%H:%M"));
    EXPECT_EQ(CString(L"3600 s, r\u00E9vis\u00E9"), note);

    ScratchDir dir;
    const CString path = dir.Path() + L"\\POUTRES.DAT"; // as the Windows program names it
    MessageBoxCapture boxes;
    ASSERT_TRUE(doc.OnSaveDocument(path));

    // The file, byte for byte: version, stamp, the list of tagged objects, the notes.
    Bytes e;
    e.u32(1).i64(1700007200LL).u16(3);
    e.u16(0xFFFF).u16(1).u16(7).raw("CPoutre", 7).text(L"P1").f64(5.5).i32(1).i64(1700000000LL).u16(0);
    e.u16(0x8001).text(L"P2").f64(6.0).i32(2).i64(1700000000LL).u16(0);
    e.u16(0x8001).text(L"P3").f64(6.5).i32(3).i64(1700003600LL).u16(0x0002); // rests on P1 (index 2)
    e.u16(2).text(L"3600 s, r\u00E9vis\u00E9").text(L"01:00");
    const std::vector<BYTE> bytes = ReadAll(dir / L"POUTRES.DAT");
    ASSERT_EQ(e.b, bytes) << Hex(bytes);

    CDocumentPoutres back;
    ASSERT_TRUE(back.OnOpenDocument(path));
    ASSERT_EQ(3, back.m_poutres.GetCount());
    POSITION pos = back.m_poutres.GetHeadPosition();
    CPoutre* p1 = back.m_poutres.GetNext(pos);
    CPoutre* p2 = back.m_poutres.GetNext(pos);
    CPoutre* p3 = back.m_poutres.GetNext(pos);
    EXPECT_EQ(CString(L"P2"), p2->m_strNom);
    EXPECT_EQ(6.0, p2->m_dLongueur);
    EXPECT_EQ(3, p3->m_nRepere);
    EXPECT_EQ(t2, p3->m_dateCreation);
    EXPECT_EQ(p1, p3->m_pAppui);
    EXPECT_EQ(nullptr, p1->m_pAppui);
    EXPECT_EQ(saved, back.m_dateEnregistrement);
    EXPECT_EQ(CString(L"01:00"), back.m_notes[1]);
    EXPECT_TRUE(boxes.boxes.empty());

    // A truncated file: the load fails with the archive's message, the document
    // holds nothing half-read.
    WriteAll(dir / L"CUT.DAT", std::vector<BYTE>(bytes.begin(), bytes.end() - 9));
    EXPECT_FALSE(back.OnOpenDocument(dir.Path() + L"\\CUT.DAT"));
    EXPECT_TRUE(back.m_poutres.IsEmpty());
    ASSERT_EQ(1u, boxes.boxes.size());
    EXPECT_EQ(L"An attempt was made to access " + dir.Path() + L"\\CUT.DAT past its end.", boxes.boxes[0].text);

    // A beam number the framework's long cannot hold: the save fails and the
    // previous file stays as it was.
    if (sizeof(long) > 4)
    {
        doc.m_poutres.GetHead()->m_nRepere = 1L << 40;
        EXPECT_FALSE(doc.OnSaveDocument(path));
        EXPECT_EQ(bytes, ReadAll(dir / L"POUTRES.DAT"));
        EXPECT_EQ(2u, boxes.boxes.size());
    }
}
