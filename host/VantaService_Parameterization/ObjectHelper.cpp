#include "VantaService_Parameterization/ObjectHelper.h"

#include <cassert>

#include "VantaService_Parameterization/ChildList.h"
#include "VantaService_Parameterization/ObjectException.h"

namespace Kestrel {

namespace {

[[noreturn]] void refuse(char const* reason) {
  throw ObjectException(std::string("ObjectHelper::addToVectorAtEnd") + reason,
                        ObjectException::ExceptionType::InvalidChild);
}

/// Whether the tree stays one when `child` is put below `parent`.
[[maybe_unused]] bool isBelowOrElsewhere(Object const& child, Object const& parent) {
  for (auto const* above = &parent; above != nullptr; above = above->getParentObject())
    if (above == &child) return false;
  return true;
}

}  // namespace

void ObjectHelper::check(Object const& parent, std::vector<std::shared_ptr<Object>> const& children) {
  for (auto const& child : children) {
    if (!child) refuse(": Nullptr add attempted");
    if (parent.existChild(child)) refuse(": Element already exists in child collection");
    assert(isBelowOrElsewhere(*child, parent));
    if (child->getParentObject() != nullptr) refuse(": Element is already child of another");
  }
}

void ObjectHelper::adopt(Object& parent, std::vector<std::shared_ptr<Object>> const& children,
                         std::optional<std::string> const& name, int idMode, bool reversed) {
  constexpr int freshIds = 1;
  std::vector<int> ids;
  if (idMode == freshIds) parent.getUniqueChildIds(children.size(), ids);
  parent.reserveChildren(children.size());
  auto const sharedName = name ? std::make_shared<std::string const>(*name) : nullptr;

  // From here on nothing can fail.
  for (std::size_t i = 0; i < children.size(); ++i) {
    children[i]->setParentObject(&parent);
    if (name) children[i]->setSharedName(sharedName);
    if (idMode == freshIds) children[i]->m_childId = ids[i];
  }
  for (std::size_t i = 0; i < children.size(); ++i)
    parent.appendChild(children[reversed ? children.size() - 1 - i : i]);
}

void ObjectHelper::detach(Object& parent, Object& child) noexcept {
  if (parent.hasChild(child)) parent.detachChild(child);
}

}  // namespace Kestrel
