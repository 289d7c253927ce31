#ifndef NOTATION_NOTATION_H_
#define NOTATION_NOTATION_H_

/// notation: from what dictionaries and corpora write to the notation that phoneme reads, and back.
/// This is the one header a caller includes.
///
/// Functions are pure and take any bytes; what cannot be placed is reported, not dropped. Any
/// number of threads may call them at once. Nothing is thrown but the standard library's allocation
/// exceptions. Their tables are made at the first call and are never freed, so that a function may
/// be called until the phone sets of phoneme are freed at exit, also by destructors.

#include "notation/analysis.h"
#include "notation/arpabet.h"
#include "notation/cutting.h"
#include "notation/jyutping.h"
#include "notation/notations.h"
#include "notation/pinyin.h"
#include "notation/reader.h"
#include "notation/records.h"
#include "notation/spelling.h"
#include "notation/writer.h"

#endif  // NOTATION_NOTATION_H_
