// A program outside the tree, built against the installed package.
#include <prefa.h>

#include <cstdio>

int main()
{
    CMemFile file;
    {
        CArchive ar(&file, CArchive::store);
        ar << CString(L"b\u00E9ton") << 2.5;
        ar.Close();
    }
    file.SeekToBegin();
    CArchive ar(&file, CArchive::load);
    CString text;
    double value = 0;
    ar >> text >> value;
    if (text != L"b\u00E9ton" || value != 2.5)
        return 1;
    std::printf("prefa %s ok\n", PREFA_VERSION_STRING);
    return 0;
}
