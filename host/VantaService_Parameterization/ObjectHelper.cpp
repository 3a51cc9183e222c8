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
  if (name)
    for (auto const& child : children) child->m_name.reserve(name->size());

  // From here on nothing can fail.
  for (std::size_t i = 0; i < children.size(); ++i) {
    Object& child = *children[i];
    if (parent.m_children->holds(child)) continue;
    child.setParentObject(&parent);
    if (name) child.setObjectName(*name);
    if (idMode == freshIds) child.m_childId = ids[i];
    parent.m_children->append(children[i]);
  }
}

}  // namespace Kestrel
