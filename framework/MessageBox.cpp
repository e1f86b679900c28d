#include "MessageBox.h"

#include "CodePage.h"

#include <cstdio>
#include <map>
#include <mutex>

namespace
{
std::mutex& Mutex()
{
    static std::mutex m;
    return m;
}

AfxMessageBoxHandler& Handler()
{
    static AfxMessageBoxHandler handler;
    return handler;
}

std::map<UINT, std::wstring>& Strings()
{
    static std::map<UINT, std::wstring> strings;
    return strings;
}
} // namespace

AfxMessageBoxHandler AfxSetMessageBoxHandler(AfxMessageBoxHandler handler)
{
    std::lock_guard<std::mutex> lock(Mutex());
    AfxMessageBoxHandler previous = Handler();
    Handler() = std::move(handler);
    return previous;
}

int AfxMessageBox(LPCTSTR lpszText, UINT nType, UINT)
{
    AfxMessageBoxHandler handler;
    {
        std::lock_guard<std::mutex> lock(Mutex());
        handler = Handler();
    }
    CString text(lpszText);
    if (handler)
        return handler(text, nType);
    // No host: the text goes to standard error and the box "answers" OK at once.
    std::string utf8 = AfxWideToUtf8(text.Std());
    std::fprintf(stderr, "%s\n", utf8.c_str());
    std::fflush(stderr);
    return IDOK;
}

int AfxMessageBox(UINT nIDPrompt, UINT nType, UINT nIDHelp)
{
    CString text;
    text.LoadString(nIDPrompt);
    return AfxMessageBox(text, nType, nIDHelp);
}

void AfxRegisterString(UINT nID, LPCTSTR lpszText)
{
    std::lock_guard<std::mutex> lock(Mutex());
    Strings()[nID] = lpszText ? lpszText : L"";
}

void AfxUnregisterString(UINT nID)
{
    std::lock_guard<std::mutex> lock(Mutex());
    Strings().erase(nID);
}

std::wstring AfxLoadStringResource(UINT nID, bool* pFound)
{
    std::lock_guard<std::mutex> lock(Mutex());
    auto it = Strings().find(nID);
    if (pFound)
        *pFound = it != Strings().end();
    return it != Strings().end() ? it->second : std::wstring();
}
