#include "standalone/Data/LabelOrder.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>
#include <vector>

#include "standalone/Data/ValueLabelSet.h"
#include "standalone/Data/Variable.h"

namespace velahost {
namespace {

// The place of a pair whose value has no category.
constexpr int kBehindAll = std::numeric_limits<int>::max();

// The places of pairs where every category has a label and a value of its own: the categories are
// the value labels that were read.
class PlacesAsRead {
 public:
  explicit PlacesAsRead(const VELA_VLImpl& read) : read_(read) {}

  int Of(const VELA_VLImpl& set, int position) const {
    const int place = read_.FindValueOf(set, position);
    return place < 0 ? kBehindAll : place;
  }

 private:
  const VELA_VLImpl& read_;
};

// The places of pairs among categories that may lack a label or repeat a value.
class PlacesAmongCategories {
 public:
  PlacesAmongCategories(const Categories& categories, int type)
      : categories_(categories), isNumeric_(type == 0), byValue_(categories.size()) {
    std::iota(byValue_.begin(), byValue_.end(), 0);
    std::sort(byValue_.begin(), byValue_.end(), [this](int a, int b) {
      const int order = Compare(At(a), At(b).number, At(b).text);
      return order != 0 ? order < 0 : a < b;
    });
  }

  // The first category of the value with a label carries the value's label. As long as it is to
  // carry the same one nothing is written; another label goes to the first category of the value.
  int Of(const VELA_VLImpl& set, int position) const {
    const double number = isNumeric_ ? set.NumberAt(position) : 0;
    const std::string_view text = isNumeric_ ? std::string_view() : set.StringAt(position);
    const auto first = std::partition_point(byValue_.begin(), byValue_.end(), [&](int place) {
      return Compare(At(place), number, text) < 0;
    });
    for (auto i = first; i != byValue_.end() && Compare(At(*i), number, text) == 0; ++i) {
      if (At(*i).label) return *At(*i).label == set.LabelAt(position) ? *i : *first;
    }
    const bool hasCategory = first != byValue_.end() && Compare(At(*first), number, text) == 0;
    return hasCategory ? *first : kBehindAll;
  }

 private:
  const Category& At(int place) const { return categories_[static_cast<std::size_t>(place)]; }

  int Compare(const Category& category, double number, std::string_view text) const {
    if (!isNumeric_) return std::string_view(category.text).compare(text);
    return category.number < number ? -1 : static_cast<int>(category.number > number);
  }

  const Categories& categories_;
  bool isNumeric_;
  std::vector<int> byValue_;  // places of the categories, sorted by value and then by place
};

// The set with its pairs in the order of their places.
template <class Places>
std::shared_ptr<VELA_VLImpl> Ordered(const std::shared_ptr<VELA_VLImpl>& set,
                                     const Places& places) {
  bool isOrdered = true;
  int last = 0;
  for (int i = 0; i < set->Size() && isOrdered; ++i) {
    const int place = places.Of(*set, i);
    isOrdered = last <= place;
    last = place;
  }
  if (isOrdered) return set;

  // Pairs without a category share a place and keep their own order by their position.
  std::vector<std::pair<int, int>> sorted;  // place and position
  sorted.reserve(static_cast<std::size_t>(set->Size()));
  for (int i = 0; i < set->Size(); ++i) sorted.emplace_back(places.Of(*set, i), i);
  std::sort(sorted.begin(), sorted.end());
  std::vector<int> order;
  order.reserve(sorted.size());
  for (const auto& [place, position] : sorted) order.push_back(position);
  return set->InOrder(order);
}

}  // namespace

std::shared_ptr<VELA_VLImpl> InDocumentOrder(const VELA_Variable::Impl& variable,
                                             const std::shared_ptr<VELA_VLImpl>& set) {
  if (!variable.document) return set;
  if (variable.categories) {
    return Ordered(set, PlacesAmongCategories(*variable.categories, variable.type));
  }
  const VELA_VLImpl* const read = HostAccess::Of(variable.AsRead().valueLabels);
  return read == nullptr ? set : Ordered(set, PlacesAsRead(*read));
}

}  // namespace velahost
