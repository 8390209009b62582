#ifndef KVDRANDOM_H
#define KVDRANDOM_H

#include <QtGlobal>

// A small generator whose sequence is fixed by the seed on every platform (the standard
// distributions are not), so that a seed always gives the same made-up figures.
class KVDRandom
{
public:
    explicit KVDRandom(quint64 seed) : m_state(seed) {}
    quint64 next()
    {
        quint64 z = (m_state += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    // Uniform in [0, 1).
    double uniform() { return double(next() >> 11) * (1.0 / 9007199254740992.0); }
    // Uniform in [0, n) for n > 0.
    int below(int n) { return int(next() % quint64(n)); }

private:
    quint64 m_state;
};

#endif
