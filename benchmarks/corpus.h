#ifndef BENCHMARKS_CORPUS_H_
#define BENCHMARKS_CORPUS_H_

// Random words of one to six syllables in every notation, the same in each run.

#include <cstddef>
#include <string>
#include <vector>

#include "phoneme/phoneme.h"

namespace qeo::sp::benchmarks {

struct Corpus {
  int language = 0;
  std::vector<std::string> toned;                     // "ni3hao3"
  std::vector<std::string> toneless;                  // "nihao"
  std::vector<std::string> pronunciations;            // "n i 3, h ao 3"
  std::vector<std::vector<unsigned char>> phone_ids;  // {24, 35, 3, 28, 43, 3}
  std::vector<std::vector<unsigned short>> codes;     // {2243, 1173}
  std::size_t syllable_count = 0;
};

/// `word_count` words of `language`, each of one to `max_syllables` syllables.
Corpus MakeCorpus(int language, std::size_t word_count, std::size_t max_syllables);

/// Toneless Mandarin words of three syllables, `byte_count` bytes in all or a little more, that can
/// be cut in one way only, alone and in a row.
std::vector<std::string> MakePlainWords(std::size_t byte_count);

}  // namespace qeo::sp::benchmarks

#endif  // BENCHMARKS_CORPUS_H_
