// Calls a caller writes against the framework. As it stands this file must compile;
// with PREFA_MISUSE defined, every line marked "must not compile" must fail (each
// would otherwise do something else than the framework does), and no other line.
#include "framework/Framework.h"

#include <string>

class CSerial : public CObject
{
    DECLARE_SERIAL(CSerial)
};

class CDynamicOnly : public CObject
{
    DECLARE_DYNAMIC(CDynamicOnly)
};

void Compiles(CArchive& ar, CObject* pObject, CSerial* pSerial, const CObject* pConst)
{
    long long x = 1;
    ar << x << (long)x << 5UL << (std::size_t)3 << L'x' << (unsigned long long)x << (LONGLONG)x << (ULONGLONG)x;
    ar << (LONG)1 << (DWORD)1 << (WORD)1 << (BYTE)1 << true << 1.0 << 1.0f << (short)1 << 'c' << 1 << 1u;
    ar << pObject << pSerial << pConst << (CObject*)nullptr << L"text" << CString(L"t") << CStringA("a");
    long l;
    unsigned long ul;
    wchar_t wc;
    long long ll;
    CString s;
    ar >> l >> ul >> wc >> ll >> x >> s >> pObject >> pSerial >> pConst;
    CTime t;
    CTimeSpan span;
    ar << t << span;
    ar >> t >> span;
    s.Format(L"%I64d %I32d %S %C %hs %ls %p %s", (LONGLONG)1, 2, "narrow", 'c', "n", L"w", (void*)pObject, s);
    CStringA a;
    a.Format("%s %S", "n", L"w");
    TRY
    {
        ar.WriteObject(pObject);
    }
    CATCH (CArchiveException, e)
    {
        THROW_LAST();
    }
    END_CATCH
}

#ifdef PREFA_MISUSE
void DoesNotCompile(CArchive& ar, CObject* pObject, CDynamicOnly* pDynamic)
{
    int* pInt = nullptr;
    const char* psz = "narrow";
    signed char sc = 0;
    long double ld = 0;
    CString s;
    ar << sc;                                  // must not compile: int in the framework, a byte here
    ar >> sc;                                  // must not compile
    ar << u'x';                                // must not compile: 4 bytes in the framework
    ar << U'x';                                // must not compile
    ar << ld;                                  // must not compile: ambiguous in the framework
    ar >> ld;                                  // must not compile
    ar << pInt;                                // must not compile: would be a bool
    ar << psz;                                 // must not compile
    ar << "narrow literal";                    // must not compile
    ar << (void*)pObject;                      // must not compile
    ar >> pDynamic;                            // must not compile: not a serialisable class
    ar >> pInt;                                // must not compile
    s.Format(L"%s", std::string("x"));         // must not compile: printf cannot take it
}
#endif
