#include "search/reductions.h"

#include "base/options.h"
#include "search/draws.h"

uint32_t reductionPv[reductionRows][reductionColumns];
uint32_t reductionNode[reductionRows][reductionColumns];

namespace {

// Steps at a, 2a, 4a, 8a and 16a: the reduction grows with each doubling of
// the move number.
uint32_t stepValue(int m, int a, const uint32_t (&values)[6]) {
  if (m < a) return values[0];
  if (m < 2 * a) return values[1];
  if (m < 4 * a) return values[2];
  if (m < 8 * a) return values[3];
  if (m < 16 * a) return values[4];
  return values[5];
}

}  // namespace

void buildReductionTables() {
  fillDrawnMaterialKeys();
  // The PV table grows by half a ply per doubling after its first step, the
  // node table by a whole ply.
  static constexpr uint32_t pvSteps[6] = {0, 2, 3, 4, 5, 6};
  static constexpr uint32_t nodeSteps[6] = {0, 2, 4, 6, 8, 10};
  for (int d = 2; d < reductionRows; ++d) {
    // Shallow rows start reducing later.
    bool shallow = d < options.redDepthThreshold;
    int a = shallow ? 7 : 5;
    int b = shallow ? 4 : 3;
    for (int m = 1; m < reductionColumns; ++m) {
      reductionPv[d][m] = stepValue(m, a, pvSteps);
      reductionNode[d][m] = stepValue(m, b, nodeSteps);
    }
  }
}
