// Binary files with the framework's open flags. On Windows the share modes are
// enforced by the system; on POSIX they are accepted and advisory only (other
// processes are not shut out). On POSIX a caller's backslashes are separators
// ("dir\\sub\\x.bin" opens dir/sub/x.bin), and a name that begins with a drive letter
// fails with the bad-path cause (see AfxPosixPath in System.h).
#pragma once

#include "CException.h"
#include "CObject.h"
#include "CString.h"

#include <vector>

class CFile : public CObject
{
    DECLARE_DYNAMIC(CFile)
public:
    enum OpenFlags
    {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000,
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,
        modeCreate = 0x1000,
        modeNoTruncate = 0x2000,
        typeText = 0x4000,
        typeBinary = 0x8000,
        osNoBuffer = 0x10000,
        osWriteThrough = 0x20000,
        osRandomAccess = 0x40000,
        osSequentialScan = 0x80000,
    };
    enum SeekPosition
    {
        begin = 0x0,
        current = 0x1,
        end = 0x2
    };

    CFile();
    CFile(LPCTSTR lpszFileName, UINT nOpenFlags); // throws CFileException* on failure
    ~CFile() override;
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    // FALSE on failure, with the cause in *pError when given (no exception).
    virtual BOOL Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError = nullptr);
    virtual UINT Read(void* lpBuf, UINT nCount);
    virtual void Write(const void* lpBuf, UINT nCount);
    virtual ULONGLONG Seek(LONGLONG lOff, UINT nFrom);
    void SeekToBegin() { Seek(0, begin); }
    ULONGLONG SeekToEnd() { return Seek(0, end); }
    virtual ULONGLONG GetPosition() const;
    virtual ULONGLONG GetLength() const;
    virtual void SetLength(ULONGLONG dwNewLen);
    virtual void Flush();
    virtual void Close();
    virtual void Abort(); // closes without throwing
    virtual CString GetFilePath() const { return m_strFileName; }
    CString GetFileName() const;
    BOOL IsOpen() const { return m_hFile != hFileNull; }

    static void Remove(LPCTSTR lpszFileName); // throws CFileException*
    static void Rename(LPCTSTR lpszOldName, LPCTSTR lpszNewName);

    static const INT_PTR hFileNull = -1;

protected:
    [[noreturn]] void ThrowOsError(LONG lOsError) const;

    INT_PTR m_hFile;
    CString m_strFileName;
};

// A file held in memory, for archives built or read without touching the disk.
class CMemFile : public CFile
{
    DECLARE_DYNAMIC(CMemFile)
public:
    CMemFile() { m_hFile = 0; }
    CMemFile(const BYTE* pData, std::size_t nSize) : m_data(pData, pData + nSize) { m_hFile = 0; }
    explicit CMemFile(std::vector<BYTE> data) : m_data(std::move(data)) { m_hFile = 0; }

    BOOL Open(LPCTSTR, UINT, CFileException* = nullptr) override { return FALSE; }
    UINT Read(void* lpBuf, UINT nCount) override;
    void Write(const void* lpBuf, UINT nCount) override;
    ULONGLONG Seek(LONGLONG lOff, UINT nFrom) override;
    ULONGLONG GetPosition() const override { return m_nPosition; }
    ULONGLONG GetLength() const override { return m_data.size(); }
    void SetLength(ULONGLONG dwNewLen) override;
    void Flush() override {}
    void Close() override { m_hFile = hFileNull; }
    void Abort() override { m_hFile = hFileNull; }

    const std::vector<BYTE>& GetData() const { return m_data; }

private:
    std::vector<BYTE> m_data;
    std::size_t m_nPosition = 0;
};

// A file written under a temporary name in the target's folder and moved over the
// target only by Close(), once flushed to the disk, so that a failed or interrupted
// save leaves the previous file as it was. Abort() (or destruction without Close)
// discards the new bytes; the temporary file of a killed save is removed by the next
// save of the same target (AfxCreateTempFileBeside).
class CMirrorFile : public CFile
{
    DECLARE_DYNAMIC(CMirrorFile)
public:
    CMirrorFile() = default;
    ~CMirrorFile() override;
    // Only creation for writing is meaningful here; other flags open the file in place.
    BOOL Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError = nullptr) override;
    void Close() override; // throws CFileException* when the replacement fails
    void Abort() override;

private:
    CString m_strMirrorName;
};
