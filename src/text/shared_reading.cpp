#include "text/shared_reading.hpp"

#include <algorithm>

#include "platform/containers/shared_elements.hpp"
#include "platform/system/present.hpp"

namespace qoc {

qsys_status makeShared(Positions positions, qoc_ocrDictionaryStringMulti &shared) {
  std::size_t expected = 0;
  for (const qoc_ocrDictionaryCharMulti &position : positions) {
    expected += ElementPool::sizeOf(view(position).size(), sizeof(qoc_ocrDictionaryChar));
  }
  // A position without candidates owns nothing: its bytes make as many as are needed.
  qoc_ocrDictionaryCharMulti blank;
  qoc_ocrDictionaryCharMulti_construct(&blank);
  QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_resizeUninit(&shared.positions,
                                                              static_cast<std::int32_t>(positions.size())));
  const auto copies = editAs<qoc_ocrDictionaryCharMulti>(shared.positions);
  std::ranges::fill(copies, blank);
  ElementPool pool(expected);
  for (std::size_t i = 0; i < positions.size(); ++i) {
    const Characters candidates = view(positions[i]);
    QOC_TRY(pool.placeCopies(copies[i].candidates.core, candidates.data(), sizeOf(positions[i])));
  }
  return shareElements(shared.positions.core);
}

}  // namespace qoc
