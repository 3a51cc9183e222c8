#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "VantaService_Parameterization/Object.h"

namespace Kestrel {

/// Operations on vectors of objects whose elements are children of one parent.
class ObjectHelper {
 public:
  /// Makes the objects of `added` children of `parent`, behind its other children, and appends them to
  /// `target`.
  ///
  /// - `name`: the name that each object gets; none: they keep their names.
  /// - `idMode`: 1 gives each object a child id that no child of the parent has; any other number leaves the
  ///   child ids as they are.
  /// - `reversed`: the objects are appended in reverse order, to `target` and to the children.
  ///
  /// Reports `ChildrenAdded` with the objects, in the order in which they were appended, once and on the root
  /// of the tree; an empty `added` changes and reports nothing. An object that occurs twice in `added`
  /// becomes two children, with the later of its two ids.
  ///
  /// Errors: ObjectException of type `InvalidChild`, decided by the first object of `added` that is an empty
  /// pointer, a child of `parent`, or a child of another parent. Then, and when memory runs out, nothing has
  /// changed.
  ///
  /// Cost: amortised O(log n) per object in the number n of children. REQUIRES: none of the objects is
  /// `parent` or above it.
  template <typename T>
  static void addToVectorAtEnd(Object* parent, std::vector<std::shared_ptr<T>> const& added,
                               std::vector<std::shared_ptr<T>>& target,
                               std::optional<std::string> const& name, int idMode, bool reversed) {
    if (added.empty()) return;
    std::vector<std::shared_ptr<Object>> children(added.begin(), added.end());
    check(*parent, children);
    std::size_t const count = added.size();
    if (target.capacity() - target.size() < count)
      target.reserve(std::max(target.size() + count, 2 * target.size()));
    adopt(*parent, children, name, idMode, reversed);
    if (reversed) std::reverse(children.begin(), children.end());
    for (std::size_t i = 0; i < count; ++i) target.push_back(added[reversed ? count - 1 - i : i]);
    parent->getRootObject()->propagateTreeChanged(ObjectTreeChangeReasonEx::ChildrenAdded, children);
  }

  /// Removes the objects of `target` from the children of `parent`, in order and with one report each, then
  /// empties `target`, which keeps its capacity. Empty pointers and objects that are no children of `parent`
  /// are passed over. During the reports, and when one throws, `target` holds all of its objects. O(log n)
  /// per object.
  template <typename T>
  static void removeAllFromVector(Object* parent, std::vector<std::shared_ptr<T>>& target) {
    // By index, and with a pointer of its own: an override of the report may add to the vector.
    for (std::size_t i = 0; i < target.size(); ++i)
      if (auto const child = target[i]) parent->removeChild(child);
    target.clear();
  }

  /// As `removeAllFromVector`, without reports: for objects that became children while they were read and
  /// that nobody has seen yet.
  template <typename T>
  static void detachAllFromVector(Object* parent, std::vector<std::shared_ptr<T>>& target) noexcept {
    for (auto const& child : target)
      if (child) detach(*parent, *child);
    target.clear();
  }

 private:
  /// Throws for the first object that cannot become a child of `parent`.
  static void check(Object const& parent, std::vector<std::shared_ptr<Object>> const& children);

  /// Links, names and numbers the objects in order and appends them to the parent's children, in the reverse
  /// order when `reversed`. Either all or, when memory runs out, none.
  static void adopt(Object& parent, std::vector<std::shared_ptr<Object>> const& children,
                    std::optional<std::string> const& name, int idMode, bool reversed);

  /// Does nothing for an object that is no child of `parent`.
  static void detach(Object& parent, Object& child) noexcept;
};

}  // namespace Kestrel
