// Framework exceptions. They are thrown as pointers to heap objects and the catcher
// releases them with Delete(), exactly as the suite's programs are written:
//     try { ... } catch (CException* e) { ...; e->Delete(); }
#pragma once

#include "CObject.h"
#include "CString.h"

class CException : public CObject
{
    DECLARE_DYNAMIC(CException)
public:
    CException() = default;
    // Releases the exception object (the catcher's duty).
    void Delete() { delete this; }
    // Copies the message, cut to nMaxError - 1 characters and terminated; returns TRUE
    // when there was a message.
    virtual BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext = nullptr) const;
    virtual CString GetMessageText() const;
};

class CSimpleException : public CException
{
    DECLARE_DYNAMIC(CSimpleException)
};

class CMemoryException : public CSimpleException
{
    DECLARE_DYNAMIC(CMemoryException)
public:
    CString GetMessageText() const override;
};

class CInvalidArgException : public CSimpleException
{
    DECLARE_DYNAMIC(CInvalidArgException)
public:
    CString GetMessageText() const override;
};

class CArchiveException : public CException
{
    DECLARE_DYNAMIC(CArchiveException)
public:
    enum
    {
        none,
        genericException,
        readOnly,
        endOfFile,
        writeOnly,
        badIndex,
        badClass,
        badSchema
    };

    explicit CArchiveException(int cause = none, LPCTSTR lpszArchiveName = nullptr);
    CString GetMessageText() const override;

    int m_cause;
    CString m_strFileName;
};

class CFileException : public CException
{
    DECLARE_DYNAMIC(CFileException)
public:
    enum
    {
        none,
        genericException,
        fileNotFound,
        badPath,
        tooManyOpenFiles,
        accessDenied,
        invalidFile,
        removeCurrentDir,
        directoryFull,
        badSeek,
        hardIO,
        sharingViolation,
        lockViolation,
        diskFull,
        endOfFile
    };

    explicit CFileException(int cause = none, LONG lOsError = -1, LPCTSTR lpszArchiveName = nullptr);
    CString GetMessageText() const override;

    // The framework's cause for an operating-system error number (errno, or the
    // system's error code on Windows).
    static int OsErrorToException(LONG lOsError);

    int m_cause;
    LONG m_lOsError;
    CString m_strFileName;
};

[[noreturn]] void AfxThrowInvalidArgException();
[[noreturn]] void AfxThrowMemoryException();
[[noreturn]] void AfxThrowArchiveException(int cause, LPCTSTR lpszArchiveName = nullptr);
[[noreturn]] void AfxThrowFileException(int cause, LONG lOsError = -1, LPCTSTR lpszFileName = nullptr);
