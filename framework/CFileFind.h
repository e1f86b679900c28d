// Finding files by a name pattern in one folder: "folder/prefix*" and the like. The
// pattern's folder part is literal; its name part may hold '*' and '?'.
#pragma once

#include "CObject.h"
#include "CString.h"

#include <vector>

class CFileFind : public CObject
{
    DECLARE_DYNAMIC(CFileFind)
public:
    CFileFind() = default;

    // TRUE when at least one entry matches; the first is then reached by FindNextFile.
    BOOL FindFile(LPCTSTR pstrName = nullptr);
    // Moves to the next match; FALSE when the one reached is the last.
    BOOL FindNextFile();
    CString GetFileName() const;
    CString GetFilePath() const;
    BOOL IsDirectory() const;
    BOOL IsDots() const;
    void Close();

    static bool MatchPattern(const wchar_t* pattern, const wchar_t* name);

private:
    struct Entry
    {
        CString name;
        bool directory;
    };
    CString m_strRoot;
    std::vector<Entry> m_entries;
    std::size_t m_nNext = 0;
    std::size_t m_nCurrent = (std::size_t)-1;
};
