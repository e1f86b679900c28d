#include "CException.h"

#include "CFile.h"

#include <algorithm>
#include <cerrno>
#include <cwchar>
#include <new>

IMPLEMENT_DYNAMIC(CException, CObject)
IMPLEMENT_DYNAMIC(CSimpleException, CException)
IMPLEMENT_DYNAMIC(CMemoryException, CSimpleException)
IMPLEMENT_DYNAMIC(CInvalidArgException, CSimpleException)
IMPLEMENT_DYNAMIC(CArchiveException, CException)
IMPLEMENT_DYNAMIC(CFileException, CException)

namespace
{
// The message of cause nCause from its table (an unknown cause gives nFallback's),
// naming the file or "an unnamed file".
CString MessageNommant(const wchar_t* const* texts, int nCount, int nCause, int nFallback, const CString& fileName)
{
    int i = (nCause >= 0 && nCause < nCount) ? nCause : nFallback;
    CString text;
    text.Format(texts[i], fileName.IsEmpty() ? CString(L"an unnamed file") : fileName);
    return text;
}
} // namespace

void CException::Delete()
{
    if (m_pLink)
        m_pLink->m_pException = nullptr;
    delete this;
}

AfxExceptionLink::~AfxExceptionLink()
{
    if (m_pException)
        m_pException->Delete();
}

void AfxExceptionLink::Own(CException* e)
{
    m_pException = e;
    if (e)
        e->m_pLink = this;
}

void AfxExceptionLink::Release()
{
    if (m_pException)
        m_pException->m_pLink = nullptr;
    m_pException = nullptr;
}

BOOL CException::GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext) const
{
    if (pnHelpContext)
        *pnHelpContext = 0;
    CString text = GetMessageText();
    if (lpszError && nMaxError > 0)
    {
        std::size_t n = std::min<std::size_t>((std::size_t)text.GetLength(), nMaxError - 1);
        std::wmemcpy(lpszError, text.GetString(), n);
        lpszError[n] = L'\0';
    }
    return text.IsEmpty() ? FALSE : TRUE;
}

CString CException::GetMessageText() const
{
    return CString();
}

int CException::ReportError(UINT nType, UINT nMessageID)
{
    wchar_t text[512];
    if (GetErrorMessage(text, 512))
        return AfxMessageBox(text, nType);
    if (nMessageID != 0)
        return AfxMessageBox(nMessageID, nType);
    return AfxMessageBox(L"No error message is available.", nType);
}

CString CMemoryException::GetMessageText() const
{
    return CString(L"Out of memory.");
}

CString CInvalidArgException::GetMessageText() const
{
    return CString(L"Encountered an improper argument.");
}

CArchiveException::CArchiveException(int cause, LPCTSTR lpszArchiveName)
    : m_cause(cause), m_strFileName(lpszArchiveName)
{
}

CString CArchiveException::GetMessageText() const
{
    static const wchar_t* const texts[] = {
        L"No error occurred.",
        L"An unexpected error occurred while reading %s.",
        L"Tried to write to %s, which is open for loading.",
        L"An attempt was made to access %s past its end.",
        L"Tried to read from %s, which is open for storing.",
        L"%s has a bad format.",
        L"%s contains an unexpected object.",
        L"%s contains an incorrect schema.",
    };
    return MessageNommant(texts, badSchema + 1, m_cause, genericException, m_strFileName);
}

CFileException::CFileException(int cause, LONG lOsError, LPCTSTR lpszArchiveName)
    : m_cause(cause), m_lOsError(lOsError), m_strFileName(lpszArchiveName)
{
}

CString CFileException::GetMessageText() const
{
    static const wchar_t* const texts[] = {
        L"No error occurred.",
        L"An unknown error occurred while accessing %s.",
        L"%s was not found.",
        L"%s contains an invalid path.",
        L"%s could not be opened because there are too many open files.",
        L"Access to %s was denied.",
        L"An invalid file handle was associated with %s.",
        L"%s could not be removed because it is the current directory.",
        L"%s could not be created because the directory is full.",
        L"Seek failed on %s.",
        L"A hardware I/O error was reported while accessing %s.",
        L"A sharing violation occurred while accessing %s.",
        L"A locking violation occurred while accessing %s.",
        L"Disk full while accessing %s.",
        L"An attempt was made to access %s past its end.",
    };
    return MessageNommant(texts, endOfFile + 1, m_cause, genericException, m_strFileName);
}

void AfxThrowInvalidArgException()
{
    throw new CInvalidArgException();
}

void AfxThrowMemoryException()
{
    throw new CMemoryException();
}

void AfxThrowArchiveException(int cause, LPCTSTR lpszArchiveName)
{
    throw new CArchiveException(cause, lpszArchiveName);
}

void AfxThrowFileException(int cause, LONG lOsError, LPCTSTR lpszFileName)
{
    throw new CFileException(cause, lOsError, lpszFileName);
}
