#include "zip/CExceptionZip.h"

IMPLEMENT_DYNAMIC(CExceptionZip, CArchiveException)

CExceptionZip::CExceptionZip(int nRaison, LPCTSTR lpszArchive, LPCTSTR lpszMembre, LPCTSTR lpszDetail)
    : CArchiveException(nRaison == motDePasseRequis || nRaison == motDePasseIncorrect ? genericException : badIndex,
                        lpszArchive),
      m_nRaison(nRaison), m_strMembre(lpszMembre), m_strDetail(lpszDetail)
{
}

CString CExceptionZip::GetMessageText() const
{
    static const wchar_t* const texts[] = {
        L"not a zip archive, or a damaged one",
        L"its compressed data are damaged",
        L"its CRC does not match its contents (damaged data)",
        L"it is encrypted and no password was given",
        L"wrong password",
        L"its compression or encryption method is not supported",
        L"the name is refused",
        L"the name is already taken by another member",
        L"symbolic links are not unpacked",
        L"only files and folders are unpacked",
        L"too many members",
        L"the members declare more bytes than allowed",
        L"it declares far more bytes than its compressed data can hold (a zip bomb?)",
        L"it inflates past its declared size (a zip bomb?)",
        L"the members' compressed data overlap (a zip bomb?)",
    };
    const int n = (int)(sizeof texts / sizeof texts[0]);
    CString archive = m_strFileName.IsEmpty() ? CString(L"zip archive") : m_strFileName;
    CString texte = archive;
    if (!m_strMembre.IsEmpty())
        texte += L", member \"" + m_strMembre + L"\"";
    texte += L": ";
    texte += texts[m_nRaison >= 0 && m_nRaison < n ? m_nRaison : archiveEndommagee];
    if (!m_strDetail.IsEmpty())
        texte += L" (" + m_strDetail + L")";
    return texte;
}

void AfxThrowZipException(int nRaison, LPCTSTR lpszArchive, LPCTSTR lpszMembre, LPCTSTR lpszDetail)
{
    throw new CExceptionZip(nRaison, lpszArchive, lpszMembre, lpszDetail);
}
