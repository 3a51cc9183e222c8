#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "VantaService_Parameterization/Object.h"
#include "VantaService_Parameterization/ObjectException.h"

namespace Kestrel {

class ObjectHelper {
 public:
  template <typename T>
  static void addToVectorAtEnd(Object* parent, std::vector<std::shared_ptr<T>> const& added,
                               std::vector<std::shared_ptr<T>>& target,
                               std::optional<std::string> const& name, int idMode, bool reversed) {
    if (added.empty()) return;
    for (auto const& element : added) check(*parent, element);
    std::vector<int> ids;
    if (idMode == 1) parent->getUniqueChildIds(added.size(), ids);
    for (std::size_t i = 0; i < added.size(); ++i) {
      Object& child = *added[i];
      child.setParentObject(parent);
      if (name) child.setObjectName(*name);
      if (idMode == 1) child.m_childId = ids[i];
    }
    auto ordered = added;
    if (reversed) std::reverse(ordered.begin(), ordered.end());
    target.insert(target.end(), ordered.begin(), ordered.end());
    std::vector<std::shared_ptr<Object>> const children(ordered.begin(), ordered.end());
    for (auto const& child : children) {
      parent->m_childIndex[child.get()] = parent->m_children.size();
      parent->m_children.push_back(child);
    }
    parent->getRootObject()->propagateTreeChanged(ObjectTreeChangeReasonEx(4), children);
  }

  template <typename T>
  static void removeAllFromVector(Object* parent, std::vector<std::shared_ptr<T>>& target) {
    for (auto const& element : target)
      if (element) parent->removeChild(element);
    target.clear();
  }

 private:
  static void check(Object const& parent, std::shared_ptr<Object> const& element) {
    if (!element) refuse(": Nullptr add attempted");
    if (parent.existChild(element)) refuse(": Element already exists in child collection");
    if (element->m_parent != nullptr) refuse(": Element is already child of another");
  }

  [[noreturn]] static void refuse(char const* reason) {
    throw ObjectException(std::string("ObjectHelper::addToVectorAtEnd") + reason,
                          ObjectException::ExceptionType(1));
  }
};

}  // namespace Kestrel
