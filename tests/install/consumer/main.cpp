// A program outside the tree, built against the installed package.
#include <prefa.h>

#include <cstdio>
#include <filesystem>

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

    // A zip archive written and read back: libzip and zlib come with the package.
    CString zipPath(AfxUtf8ToWide((std::filesystem::temp_directory_path() / "prefa_consumer.zip").u8string()));
    CArchiveZip zip;
    if (!zip.Ouvre(zipPath, CArchiveZip::modeCreation) || !zip.AjouteTampon(L"a.txt", "abc", 3, 0) || !zip.Ferme())
        return 1;
    std::vector<BYTE> contents;
    if (!zip.Ouvre(zipPath) || !zip.LitMembre(0, contents) || contents.size() != 3)
        return 1;
    zip.Ferme();
    std::filesystem::remove(std::filesystem::path(zipPath.Std()));
    std::printf("prefa %s ok\n", PREFA_VERSION_STRING);
    return 0;
}
