// Deflating an archive's members on every core while libzip writes them one after
// the other. Each member is cut into blocks compressed independently, each primed
// with the 32 KB that precede it, the way pigz does; the blocks end on a byte
// boundary (a sync flush) and the last finishes the stream, so that their
// concatenation is one ordinary deflate stream and its CRC the combination of the
// blocks' CRCs. libzip reads the members through sources that hand it the
// compressed blocks in order and adds only the headers (and the encryption).
//
// Workers run ahead of the writer by a bounded window of blocks, so memory stays
// a few megabytes whatever the size of the members.
#pragma once

#include "framework/Framework.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

struct zip;
struct zip_source;

class CCompresseurParallele
{
public:
    // Bytes of a block, and how far the workers may run ahead of the writer.
    static const UINT kTailleBloc = 512 * 1024;

    explicit CCompresseurParallele(int nThreads);
    ~CCompresseurParallele();
    CCompresseurParallele(const CCompresseurParallele&) = delete;
    CCompresseurParallele& operator=(const CCompresseurParallele&) = delete;

    // A libzip source giving the file's first nTaille bytes deflated at nNiveau
    // (1-9), or as they are for nNiveau 0, with the date nDate. Members must be
    // read in the order their sources were made (libzip writes in that order).
    zip_source* SourceFichier(zip* za, const CString& strChemin, ULONGLONG nTaille, __time64_t nDate, int nNiveau);
    // The same for bytes held in memory.
    zip_source* SourceTampon(zip* za, std::vector<BYTE> donnees, __time64_t nDate, int nNiveau);

    // Called on the writing thread as blocks are handed over: bytes of the members
    // read so far, and the member being written.
    void DefinitProgression(std::function<void(ULONGLONG nOctets, const CString& strMembre)> progression);
    // Total size of the members declared so far.
    ULONGLONG TailleTotale() const { return m_nTailleTotale; }

    // The first file that could not be read, with its errno value; 0 when none.
    int Erreur(CString& strChemin) const;

private:
    struct Fichier;
    struct Bloc;
    struct Lecteur;

    zip_source* Source(zip* za, Fichier fichier);
    void Travaille();
    void CompresseBloc(std::size_t nBloc, std::vector<BYTE>& entree, void* pFlux, int& nNiveauFlux);
    // The writer's side, called by libzip on the writing thread.
    friend struct RappelSource;
    bool Commence(Lecteur& lecteur);
    long long Lit(Lecteur& lecteur, BYTE* pDestination, ULONGLONG nLongueur);

    mutable std::mutex m_verrou;
    std::condition_variable m_travail; // a block to compress, or the end
    std::condition_variable m_fait;    // a block compressed
    std::deque<Fichier> m_fichiers;
    std::deque<Bloc> m_blocs;
    std::size_t m_nProchain = 0; // next block for a worker
    std::size_t m_nBase = 0;     // first block the writer still wants
    std::size_t m_nFenetre;
    bool m_bArret = false;
    std::vector<std::thread> m_threads;
    int m_nThreads;

    ULONGLONG m_nTailleTotale = 0;
    ULONGLONG m_nOctetsLivres = 0;
    std::function<void(ULONGLONG, const CString&)> m_progression;
    int m_nErreur = 0;
    CString m_strErreur;
};
