// Writes the seed corpus of every harness: valid files of each loader, made by the
// library itself, one folder per harness under the folder given. Run before fuzzing;
// nothing of it is kept in the source tree.
#include "Entree.h"

#include <prefa.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace
{
fs::path g_racine;

void Ecrit(const std::string& harnais, const std::string& nom, const std::vector<BYTE>& octets)
{
    fs::create_directories(g_racine / harnais);
    std::ofstream f(g_racine / harnais / nom, std::ios::binary | std::ios::trunc);
    f.write(reinterpret_cast<const char*>(octets.data()), (std::streamsize)octets.size());
}

// The bytes an object stores, optionally after a first byte of the harness's own.
std::vector<BYTE> Stocke(const std::function<void(CArchive&)>& f, int nEntete = -1)
{
    CMemFile fichier;
    {
        CArchive ar(&fichier, CArchive::store);
        if (nEntete >= 0)
            ar << (BYTE)nEntete;
        f(ar);
        ar.Close();
    }
    return fichier.GetData();
}

CPolygone* Rectangle(double x, double y, double l, double h)
{
    CPolygone* p = new CPolygone;
    p->AddTail(x, y);
    p->AddTail(x + l, y);
    p->AddTail(x + l, y + h);
    p->AddTail(x, y + h);
    return p;
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "usage: %s CORPUS_FOLDER\n", argv[0]);
        return 2;
    }
    g_racine = argv[1];

    // Archive values: each operation code followed by a value of its kind.
    Ecrit("fuzz_archive", "valeurs", Stocke([](CArchive& ar) {
              ar << (BYTE)0 << CString(L"Désignation €") << (BYTE)1 << CStringA("ancien") << (BYTE)2 << (WORD)7
                 << (BYTE)3 << (DWORD)70000 << (BYTE)4 << 0.25 << (BYTE)5 << (ULONGLONG)1 << (BYTE)6;
              ar.WriteStringLength(300, true);
              ar << (BYTE)7 << (BYTE)3 << (BYTE)1 << (BYTE)2 << (BYTE)3 << (BYTE)8 << (DWORD)2 << (WORD)4
                 << (BYTE)9 << 1.5f;
          }));
    Ecrit("fuzz_archive", "texte_long", Stocke([](CArchive& ar) { ar << (BYTE)0 << CString(L'x', 300); }));

    CAffaire affaire;
    affaire.Texte1 = L"A-1";
    affaire.Texte2 = L"Poutres préfabriquées";
    affaire.Liste1[1] = L"liste";
    affaire.Liste2[2] = L"€";
    affaire.Valeur2 = 2;
    affaire.Texte12 = L"fin";
    Ecrit("fuzz_affaire", "vorenaff", Stocke([&](CArchive& ar) { affaire.Serialize(ar); }));
    std::vector<BYTE> echange(CAffaire::TAILLE_ECHANGE);
    affaire.RemplitEchange(echange.data());
    Ecrit("fuzz_affaire", "lumacaff", echange);

    for (DWORD version : {8u, 2u})
    {
        CInfoPlan plan;
        plan.Texte1 = L"Plan de coffrage";
        for (int i = 0; i < 2; ++i)
        {
            auto* m = new CInfoModifications;
            m->Indice = (char)('A' + i);
            m->Texte = L"révision";
            plan.Modifications.AddTail(m);
        }
        plan.Textes.AddTail(CString(L"note"));
        plan.Texte5 = L"fin";
        std::vector<BYTE> octets = Stocke([&](CArchive& ar) { plan.Serialize(ar, L"AFF1", 1); });
        octets[0] = (BYTE)version; // an older version reads a prefix of the same fields
        Ecrit("fuzz_plan", "version" + std::to_string(version), octets);
    }

    CConfigBRAXEL config;
    config.NomOrdinateur = L"PC-A";
    config.NomUtilisateur = L"Hélène";
    Ecrit("fuzz_config", "braxel_cfg", Stocke([&](CArchive& ar) { config.Serialize(ar); }));
    std::vector<BYTE> lock(CConfigBRAXEL::TAILLE_LOCK);
    config.RemplitLock(lock.data());
    Ecrit("fuzz_config", "lock", lock);

    for (auto type : {CTemperatureGenerale::DTU, CTemperatureGenerale::EC2})
    {
        CTemperatureGenerale t;
        t.m_TypeCalcul = type;
        t.m_nTravail[TravailN::NB_LIGNES] = 4;
        t.m_nTravail[TravailN::NB_COLONNES] = 3;
        t.SetDELX(0.01);
        t.m_PtTranslation = CPointD(0.1, 0.2);
        for (int i = 0; i < 4; ++i)
        {
            CTemperatureGenerale::CLigne ligne;
            for (int j = 0; j < 3; ++j)
                ligne.Add(20.0 + 100.0 * i + j);
            t.m_T1.Add(ligne);
        }
        Ecrit("fuzz_temperature", "champ" + std::to_string((int)type), Stocke([&](CArchive& ar) { t.Serialize(ar); }));
    }

    CListePolygone l1, l2;
    l1.AddTail(Rectangle(0, 0, 0.3, 0.6));
    l2.AddTail(Rectangle(0.1, 0.1, 0.05, 0.05));
    CSectionGenerale section;
    section.CaracteristiquesSectionsPolygone(l1, l2);
    Ecrit("fuzz_section", "section", Stocke([&](CArchive& ar) { section.Serialize(ar); }));

    CPointD point(0.5, -1.25);
    CVecteur vecteur(0, 0, 1, 2);
    CRepere repere(point, 10.0, 20.0, vecteur, 100.0);
    CPolygone l;
    for (auto xy : {std::pair<double, double>{0, 0}, {2, 0}, {2, 1}, {1, 1}, {1, 2}, {0, 2}})
        l.AddTail(xy.first, xy.second);
    Ecrit("fuzz_contours", "point", Stocke([&](CArchive& ar) { point.Serialize(ar); }, 0));
    Ecrit("fuzz_contours", "vecteur", Stocke([&](CArchive& ar) { vecteur.Serialize(ar); }, 1));
    Ecrit("fuzz_contours", "repere", Stocke([&](CArchive& ar) { repere.Serialize(ar); }, 2));
    Ecrit("fuzz_contours", "polygone_en_l", Stocke([&](CArchive& ar) { l.Serialize(ar); }, 3));
    l1.AddTail(new CPolygone(l));
    Ecrit("fuzz_contours", "liste", Stocke([&](CArchive& ar) { l1.Serialize(ar); }, 4));

    auto texte = [](const char* s) { return std::vector<BYTE>(s, s + std::char_traits<char>::length(s)); };
    Ecrit("fuzz_entree", "feu", texte(prefa_cli::kFireExampleJson));
    Ecrit("fuzz_entree", "section", texte(prefa_cli::kSectionExampleJson));
    Ecrit("fuzz_entree", "dtu_cavite", texte(R"({"outline": [[0,0],[0.4,0],[0.4,0.5],[0,0.5]],
        "cavities": [[[0.1,0.1],[0.3,0.1],[0.3,0.3],[0.1,0.3]]], "method": "dtu", "duration": 1.5,
        "bars": [{"name": "A", "x": 0.05, "y": 0.05}], "fire_curve": "hydrocarbon", "aggregate": "calcareous"})"));
    return 0;
}
