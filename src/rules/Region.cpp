#include "rules/Region.h"

namespace quibbits {

std::string_view rawValue(Region region) {
    return region == Region::coralis ? "coralis" : "fernvale";
}

std::string displayName(Region region) {
    return region == Region::coralis ? "Coralis" : "Fernvale";
}

Region currentRegion(const UserDefaults& defaults) {
    return defaults.string("region") == rawValue(Region::coralis) ? Region::coralis
                                                                  : Region::fernvale;
}

}  // namespace quibbits
