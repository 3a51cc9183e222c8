#include "VantaService_Parameterization/ObjectHelper.h"

#include "VantaService_Parameterization/ChildList.h"
#include "VantaService_Parameterization/ObjectException.h"

namespace Kestrel {

namespace {

[[noreturn]] void refuse(char const* reason) {
  throw ObjectException(std::string("ObjectHelper::addToVectorAtEnd") + reason,
                        ObjectException::ExceptionType::InvalidChild);
}

}  // namespace

void ObjectHelper::check(Object const& parent, std::vector<std::shared_ptr<Object>> const& children) {
  for (auto const& child : children) {
    if (!child) refuse(": Nullptr add attempted");
    if (parent.existChild(child)) refuse(": Element already exists in child collection");
    if (child->getParentObject() != nullptr) refuse(": Element is already child of another");
  }
}

void ObjectHelper::adopt(Object& parent, std::vector<std::shared_ptr<Object>> const& children,
                         std::optional<std::string> const& name, int idMode, bool reversed) {
  constexpr int freshIds = 1;
  std::vector<int> ids;
  if (idMode == freshIds) parent.getUniqueChildIds(children.size(), ids);
  if (reversed) std::reverse(ids.begin(), ids.end());
  parent.reserveChildren(children.size());
  auto const sharedName = name ? std::make_shared<std::string const>(*name) : nullptr;

  // From here on nothing can fail.
  for (std::size_t i = 0; i < children.size(); ++i) {
    Object& child = *children[i];
    // It occurs twice.
    if (child.getParentObject() == &parent) continue;
    if (name) child.setSharedName(sharedName);
    if (idMode == freshIds) child.m_childId = ids[i];
    parent.appendChild(children[i]);
  }
}

}  // namespace Kestrel
