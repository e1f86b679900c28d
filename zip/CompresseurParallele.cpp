#include "zip/CompresseurParallele.h"

#include <zip.h>
#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace
{
const UINT kDictionnaire = 32768; // deflate's window: what a block may refer back to

// Deflates nLongueur bytes that follow nDictionnaire bytes of the member's preceding
// data, into sortie: ended by a sync flush (byte aligned, not final) unless it is
// the member's last block, which finishes the stream. 0, or ENOMEM.
int Deflate(z_stream& z, int& nNiveauFlux, int nNiveau, const BYTE* pDonnees, UINT nDictionnaire, UINT nLongueur,
            bool bDernier, std::vector<BYTE>& sortie)
{
    if (nNiveauFlux != nNiveau)
    {
        if (nNiveauFlux)
            deflateEnd(&z);
        nNiveauFlux = 0;
        std::memset(&z, 0, sizeof z);
        // Raw deflate (no zlib header): the zip format wraps the stream itself.
        if (deflateInit2(&z, nNiveau, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY) != Z_OK)
            return ENOMEM;
        nNiveauFlux = nNiveau;
    }
    else
        deflateReset(&z);
    if (nDictionnaire)
        deflateSetDictionary(&z, pDonnees, nDictionnaire);
    sortie.resize(deflateBound(&z, nLongueur) + 16);
    z.next_in = const_cast<BYTE*>(pDonnees + nDictionnaire);
    z.avail_in = nLongueur;
    z.next_out = sortie.data();
    z.avail_out = (uInt)sortie.size();
    const int flush = bDernier ? Z_FINISH : Z_SYNC_FLUSH;
    for (;;)
    {
        int r = deflate(&z, flush);
        if (r == Z_STREAM_END)
            break;
        if (r != Z_OK && r != Z_BUF_ERROR)
            return ENOMEM;
        // A sync flush is complete once the input is taken and room is left over.
        if (flush == Z_SYNC_FLUSH && z.avail_in == 0 && z.avail_out > 0)
            break;
        std::size_t fait = sortie.size() - z.avail_out;
        sortie.resize(sortie.size() * 2);
        z.next_out = sortie.data() + fait;
        z.avail_out = (uInt)(sortie.size() - fait);
    }
    sortie.resize(sortie.size() - z.avail_out);
    return 0;
}
} // namespace

struct CCompresseurParallele::Fichier
{
    CString chemin;                              // empty for bytes in memory
    std::shared_ptr<const std::vector<BYTE>> memoire;
    ULONGLONG taille = 0;
    __time64_t date = 0;
    int niveau = 0;
    std::size_t premierBloc = 0;
    std::size_t nBlocs = 0;
};

struct CCompresseurParallele::Bloc
{
    std::size_t fichier = 0;
    ULONGLONG debut = 0;
    UINT longueur = 0;
    bool dernier = false;
    bool fait = false;
    int erreur = 0; // errno of the file's reading
    uLong crc = 0;
    std::vector<BYTE> sortie;
};

// One source's reading state: where it is among its member's blocks.
struct CCompresseurParallele::Lecteur
{
    CCompresseurParallele* compresseur = nullptr;
    std::size_t fichier = 0;
    std::size_t bloc = 0;      // current block
    std::size_t position = 0;  // in the current block's output
    bool ouvert = false;
    bool termine = false;
    uLong crc = 0;
    ULONGLONG compresse = 0;
    zip_error_t erreur;
};

struct RappelSource
{
    static zip_int64_t Appel(void* pEtat, void* pDonnees, zip_uint64_t nLongueur, zip_source_cmd_t nCommande)
    {
        CCompresseurParallele::Lecteur& l = *static_cast<CCompresseurParallele::Lecteur*>(pEtat);
        switch (nCommande)
        {
        case ZIP_SOURCE_OPEN:
            return l.compresseur->Commence(l) ? 0 : -1;
        case ZIP_SOURCE_READ:
            return l.compresseur->Lit(l, static_cast<BYTE*>(pDonnees), nLongueur);
        case ZIP_SOURCE_CLOSE:
            return 0;
        case ZIP_SOURCE_STAT:
        {
            if (nLongueur < sizeof(zip_stat_t))
                return -1;
            zip_stat_t* st = static_cast<zip_stat_t*>(pDonnees);
            const CCompresseurParallele::Fichier& f = l.compresseur->m_fichiers[l.fichier];
            zip_stat_init(st);
            // The date must come from here: libzip's PKWARE encryption derives its
            // check byte from the source's date, not from a date set on the entry.
            st->valid = ZIP_STAT_SIZE | ZIP_STAT_MTIME | ZIP_STAT_COMP_METHOD | ZIP_STAT_ENCRYPTION_METHOD;
            st->size = f.taille;
            st->mtime = (time_t)f.date;
            st->comp_method = f.niveau > 0 ? ZIP_CM_DEFLATE : ZIP_CM_STORE;
            st->encryption_method = ZIP_EM_NONE;
            if (l.termine)
            {
                st->valid |= ZIP_STAT_CRC | ZIP_STAT_COMP_SIZE;
                st->crc = (zip_uint32_t)l.crc;
                st->comp_size = l.compresse;
            }
            return sizeof(zip_stat_t);
        }
        case ZIP_SOURCE_ERROR:
            return zip_error_to_data(&l.erreur, pDonnees, nLongueur);
        case ZIP_SOURCE_FREE:
            zip_error_fini(&l.erreur);
            delete &l;
            return 0;
        case ZIP_SOURCE_SUPPORTS:
            return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                                  ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, -1);
        default:
            zip_error_set(&l.erreur, ZIP_ER_OPNOTSUPP, 0);
            return -1;
        }
    }
};

CCompresseurParallele::CCompresseurParallele(int nThreads)
    : m_nFenetre((std::size_t)std::max(8, 4 * nThreads)), m_nThreads(std::max(1, nThreads))
{
}

CCompresseurParallele::~CCompresseurParallele()
{
    {
        std::lock_guard<std::mutex> g(m_verrou);
        m_bArret = true;
    }
    m_travail.notify_all();
    for (std::thread& t : m_threads)
        t.join();
}

void CCompresseurParallele::DefinitProgression(std::function<void(ULONGLONG, const CString&)> progression)
{
    m_progression = std::move(progression);
}

int CCompresseurParallele::Erreur(CString& strChemin) const
{
    std::lock_guard<std::mutex> g(m_verrou);
    strChemin = m_strErreur;
    return m_nErreur;
}

zip_source* CCompresseurParallele::SourceFichier(zip* za, const CString& strChemin, ULONGLONG nTaille,
                                                 __time64_t nDate, int nNiveau)
{
    Fichier f;
    f.chemin = strChemin;
    f.taille = nTaille;
    f.date = nDate;
    f.niveau = nNiveau;
    return Source(za, std::move(f));
}

zip_source* CCompresseurParallele::SourceTampon(zip* za, std::vector<BYTE> donnees, __time64_t nDate, int nNiveau)
{
    Fichier f;
    f.taille = donnees.size();
    f.memoire = std::make_shared<const std::vector<BYTE>>(std::move(donnees));
    f.date = nDate;
    f.niveau = nNiveau;
    return Source(za, std::move(f));
}

zip_source* CCompresseurParallele::Source(zip* za, Fichier fichier)
{
    Lecteur* l = new Lecteur();
    l->compresseur = this;
    zip_error_init(&l->erreur);
    {
        std::lock_guard<std::mutex> g(m_verrou);
        l->fichier = m_fichiers.size();
        // An empty member is still one block: a deflate stream is never empty.
        fichier.premierBloc = m_blocs.size();
        fichier.nBlocs = std::max<std::size_t>(1, (std::size_t)((fichier.taille + kTailleBloc - 1) / kTailleBloc));
        for (std::size_t k = 0; k < fichier.nBlocs; ++k)
        {
            Bloc b;
            b.fichier = l->fichier;
            b.debut = (ULONGLONG)k * kTailleBloc;
            b.longueur = (UINT)std::min<ULONGLONG>(kTailleBloc, fichier.taille - b.debut);
            b.dernier = k + 1 == fichier.nBlocs;
            m_blocs.push_back(std::move(b));
        }
        m_nTailleTotale += fichier.taille;
        m_fichiers.push_back(std::move(fichier));
        if (m_threads.empty())
            for (int t = 0; t < m_nThreads; ++t)
                m_threads.emplace_back([this] { Travaille(); });
    }
    m_travail.notify_all();
    zip_source_t* source = zip_source_function(za, &RappelSource::Appel, l);
    if (source == nullptr)
    {
        zip_error_fini(&l->erreur);
        delete l; // its blocks are skipped when the writer moves past them
    }
    return source;
}

void CCompresseurParallele::Travaille()
{
    z_stream flux;
    std::memset(&flux, 0, sizeof flux);
    int nNiveauFlux = 0; // 0: no deflate state yet
    std::vector<BYTE> entree;
    std::unique_lock<std::mutex> g(m_verrou);
    for (;;)
    {
        m_travail.wait(g, [this] {
            return m_bArret || (m_nProchain < m_blocs.size() && m_nProchain < m_nBase + m_nFenetre);
        });
        if (m_bArret)
            break;
        std::size_t n = m_nProchain++;
        g.unlock();
        try
        {
            CompresseBloc(n, entree, &flux, nNiveauFlux);
            g.lock();
        }
        catch (...) // out of memory: the writer reports the block as unreadable
        {
            g.lock();
            m_blocs[n].erreur = ENOMEM;
            m_blocs[n].fait = true;
        }
        m_fait.notify_all();
    }
    if (nNiveauFlux)
        deflateEnd(&flux);
}

void CCompresseurParallele::CompresseBloc(std::size_t nBloc, std::vector<BYTE>& entree, void* pFlux, int& nNiveauFlux)
{
    // The block's description is copied under the lock; the work is done without it.
    Fichier f;
    Bloc b;
    {
        std::lock_guard<std::mutex> g(m_verrou);
        const Bloc& ref = m_blocs[nBloc];
        b.debut = ref.debut;
        b.longueur = ref.longueur;
        b.dernier = ref.dernier;
        const Fichier& fr = m_fichiers[ref.fichier];
        f.chemin = fr.chemin;
        f.memoire = fr.memoire;
        f.niveau = fr.niveau;
    }
    const UINT dictionnaire = f.niveau > 0 ? (UINT)std::min<ULONGLONG>(b.debut, kDictionnaire) : 0;
    const BYTE* donnees = nullptr;
    if (f.memoire)
        donnees = f.memoire->data() + (b.debut - dictionnaire);
    else
    {
        entree.resize((std::size_t)dictionnaire + b.longueur);
        CFile fichier;
        CFileException e;
        if (!fichier.Open(f.chemin, CFile::modeRead | CFile::shareDenyWrite | CFile::typeBinary, &e))
            b.erreur = e.m_lOsError > 0 ? (int)e.m_lOsError : EIO;
        else
        {
            try
            {
                fichier.Seek((LONGLONG)(b.debut - dictionnaire), CFile::begin);
                // A file that shrank since it was listed cannot give its declared size.
                if (fichier.Read(entree.data(), (UINT)entree.size()) != entree.size())
                    b.erreur = EIO;
            }
            catch (CFileException* pe)
            {
                b.erreur = pe->m_lOsError > 0 ? (int)pe->m_lOsError : EIO;
                pe->Delete();
            }
        }
        donnees = entree.data();
    }

    if (b.erreur == 0)
    {
        const BYTE* bloc = donnees + dictionnaire;
        b.crc = crc32(0L, bloc, b.longueur);
        if (f.niveau <= 0)
            b.sortie.assign(bloc, bloc + b.longueur);
        else
            b.erreur = Deflate(*static_cast<z_stream*>(pFlux), nNiveauFlux, f.niveau, donnees, dictionnaire,
                               b.longueur, b.dernier, b.sortie);
    }

    std::lock_guard<std::mutex> g(m_verrou);
    Bloc& ref = m_blocs[nBloc];
    ref.erreur = b.erreur;
    ref.crc = b.crc;
    // A block the writer has moved past (a member it skipped) is not kept.
    if (nBloc >= m_nBase)
        ref.sortie = std::move(b.sortie);
    ref.fait = true;
}

bool CCompresseurParallele::Commence(Lecteur& l)
{
    std::lock_guard<std::mutex> g(m_verrou);
    const Fichier& f = m_fichiers[l.fichier];
    // The blocks are compressed once, ahead of time: a member cannot be read twice
    // nor out of turn.
    if (l.ouvert || f.premierBloc < m_nBase)
    {
        zip_error_set(&l.erreur, ZIP_ER_INTERNAL, 0);
        return false;
    }
    for (std::size_t k = m_nBase; k < f.premierBloc; ++k)
        std::vector<BYTE>().swap(m_blocs[k].sortie);
    m_nBase = f.premierBloc;
    m_nProchain = std::max(m_nProchain, m_nBase);
    l.ouvert = true;
    l.bloc = f.premierBloc;
    l.position = 0;
    l.crc = 0;
    l.compresse = 0;
    m_travail.notify_all();
    return true;
}

long long CCompresseurParallele::Lit(Lecteur& l, BYTE* pDestination, ULONGLONG nLongueur)
{
    const Fichier& f = m_fichiers[l.fichier];
    const std::size_t fin = f.premierBloc + f.nBlocs;
    ULONGLONG copie = 0;
    while (copie < nLongueur && l.bloc < fin)
    {
        Bloc* b;
        {
            std::unique_lock<std::mutex> g(m_verrou);
            m_fait.wait(g, [&] { return m_blocs[l.bloc].fait; });
            b = &m_blocs[l.bloc];
            if (b->erreur)
            {
                if (m_nErreur == 0)
                {
                    m_nErreur = b->erreur;
                    m_strErreur = f.chemin;
                }
                zip_error_set(&l.erreur, ZIP_ER_READ, b->erreur);
                return -1;
            }
        }
        // A finished block is no longer touched by the workers.
        std::size_t n = (std::size_t)std::min<ULONGLONG>(nLongueur - copie, b->sortie.size() - l.position);
        std::memcpy(pDestination + copie, b->sortie.data() + l.position, n);
        copie += n;
        l.position += n;
        if (l.position == b->sortie.size())
        {
            l.crc = crc32_combine(l.crc, b->crc, (z_off_t)b->longueur);
            l.compresse += b->sortie.size();
            ULONGLONG livres;
            {
                std::lock_guard<std::mutex> g(m_verrou);
                std::vector<BYTE>().swap(b->sortie);
                m_nBase = ++l.bloc;
                m_nOctetsLivres += b->longueur;
                livres = m_nOctetsLivres;
            }
            m_travail.notify_all();
            l.position = 0;
            if (m_progression)
                m_progression(livres, f.chemin);
        }
    }
    if (l.bloc == fin)
        l.termine = true;
    return (long long)copie;
}
