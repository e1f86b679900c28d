// Framework exceptions. They are thrown as pointers to heap objects and the catcher
// releases them with Delete(), exactly as the suite's programs are written:
//     try { ... } catch (CException* e) { ...; e->Delete(); }
// or with the framework's macros, which release the exception themselves at
// END_CATCH (unless THROW_LAST passed it on):
//     TRY { ... }
//     CATCH (CFileException, e) { ... e->m_cause ... }
//     AND_CATCH (CArchiveException, e) { ...; THROW_LAST(); }
//     END_CATCH
// A Delete() inside a CATCH block is harmless here (END_CATCH then leaves the
// exception alone).
#pragma once

#include "CObject.h"
#include "CString.h"
#include "MessageBox.h"

struct AfxExceptionLink;

class CException : public CObject
{
    DECLARE_DYNAMIC(CException)
public:
    CException() = default;
    // A copy is not caught by anyone: the CATCH block that owns the original stays with it.
    CException(const CException&) : CObject() {}
    CException& operator=(const CException&) { return *this; }
    // Releases the exception object (the catcher's duty).
    void Delete();
    // Copies the message, cut to nMaxError - 1 characters and terminated; returns TRUE
    // when there was a message.
    virtual BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext = nullptr) const;
    virtual CString GetMessageText() const;
    // Shows the message (at most 511 characters) through AfxMessageBox; without one,
    // the application's string nMessageID, or "No error message is available.".
    // Returns the button pressed.
    virtual int ReportError(UINT nType = MB_OK, UINT nMessageID = 0);

private:
    friend struct AfxExceptionLink;
    AfxExceptionLink* m_pLink = nullptr; // the CATCH block that owns it, if any
};

// What a TRY block keeps: the exception its CATCH caught, released at END_CATCH.
struct AfxExceptionLink
{
    AfxExceptionLink() = default;
    ~AfxExceptionLink();
    AfxExceptionLink(const AfxExceptionLink&) = delete;
    AfxExceptionLink& operator=(const AfxExceptionLink&) = delete;
    void Own(CException* e);
    void Release(); // THROW_LAST: the exception goes on to the next catcher

    CException* m_pException = nullptr;
};

#define TRY                                \
    {                                      \
        AfxExceptionLink _afxExceptionLink; \
        try                                \
        {
#define CATCH(class_name, e)          \
    }                                 \
    catch (class_name * e)            \
    {                                 \
        _afxExceptionLink.Own(e);
#define AND_CATCH(class_name, e) CATCH(class_name, e)
#define END_CATCH \
    }             \
    }
#define CATCH_ALL(e) CATCH(CException, e)
#define AND_CATCH_ALL(e) CATCH(CException, e)
#define END_CATCH_ALL END_CATCH
#define THROW(e) throw e
#define THROW_LAST() (_afxExceptionLink.Release(), throw)

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
