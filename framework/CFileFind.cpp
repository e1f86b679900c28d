#include "CFileFind.h"

#include "System.h"

#include <algorithm>
#include <filesystem>

IMPLEMENT_DYNAMIC(CFileFind, CObject)

namespace fs = std::filesystem;

bool CFileFind::MatchPattern(const wchar_t* pattern, const wchar_t* name)
{
    // Iterative '*' matching with one backtrack point: linear in practice.
    const wchar_t* star = nullptr;
    const wchar_t* retry = nullptr;
    while (*name)
    {
        if (*pattern == L'*')
        {
            star = pattern++;
            retry = name;
        }
        else if (*pattern == L'?' || *pattern == *name)
        {
            ++pattern;
            ++name;
        }
        else if (star)
        {
            pattern = star + 1;
            name = ++retry;
        }
        else
            return false;
    }
    while (*pattern == L'*')
        ++pattern;
    return *pattern == 0;
}

BOOL CFileFind::FindFile(LPCTSTR pstrName)
{
    Close();
    std::wstring pattern = pstrName ? pstrName : L"*";
    // The folder part ends at the last separator (or a drive's colon on Windows: "D:NAME"
    // is NAME in the current folder of drive D).
    const std::size_t cut = (std::size_t)AfxPathFolderLength(CString(pattern));
    std::wstring folder = cut == 0 ? L"." : pattern.substr(0, cut);
    const std::wstring namePattern = pattern.substr(cut);
    // Where slash is the separator, a caller's backslashes are separators too.
    if (AfxPathSeparator() == L'/')
        std::replace(folder.begin(), folder.end(), L'\\', L'/');
    m_strRoot = CString(pattern.substr(0, cut));
    std::error_code ec;
    fs::directory_iterator it(fs::path(folder), ec), end;
    for (; !ec && it != end; it.increment(ec))
    {
        std::wstring name = it->path().filename().wstring();
        if (MatchPattern(namePattern.c_str(), name.c_str()))
        {
            std::error_code ec2;
            m_entries.push_back({CString(name), it->is_directory(ec2)});
        }
    }
    std::sort(m_entries.begin(), m_entries.end(),
              [](const Entry& a, const Entry& b) { return a.name.Std() < b.name.Std(); });
    return m_entries.empty() ? FALSE : TRUE;
}

BOOL CFileFind::FindNextFile()
{
    if (m_nNext >= m_entries.size())
        return FALSE;
    m_nCurrent = m_nNext++;
    return m_nNext < m_entries.size() ? TRUE : FALSE;
}

CString CFileFind::GetFileName() const
{
    return m_nCurrent < m_entries.size() ? m_entries[m_nCurrent].name : CString();
}

CString CFileFind::GetFilePath() const
{
    return m_nCurrent < m_entries.size() ? m_strRoot + m_entries[m_nCurrent].name : CString();
}

BOOL CFileFind::IsDirectory() const
{
    return m_nCurrent < m_entries.size() && m_entries[m_nCurrent].directory;
}

BOOL CFileFind::IsDots() const
{
    CString n = GetFileName();
    return n == L"." || n == L"..";
}

void CFileFind::Close()
{
    m_entries.clear();
    m_strRoot.Empty();
    m_nNext = 0;
    m_nCurrent = (std::size_t)-1;
}
