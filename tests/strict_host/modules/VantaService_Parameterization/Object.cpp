#include "VantaService_Parameterization/Object.h"

#include <algorithm>

#include "VantaService_PersistenceArchiver/ClassRegistration.h"

namespace Kestrel {

namespace {

bool const s_isObjectRegistered = registerClass<Object>();

constexpr auto childRemoved = ObjectTreeChangeReasonEx(7);

}  // namespace

Object::Object() = default;

Object::~Object() {
  for (auto const& child : m_children) child->m_parent = nullptr;
}

void Object::registerInterfaces() {}
void Object::unregisterInterfaces() {}
void Object::convertKEDDataToCurrent() {}
void Object::finalizeLoading() {}
bool Object::blockFinalizeLoading() const { return false; }
std::vector<std::shared_ptr<Object>> Object::getSigmaVariationParameters() const { return {}; }
std::vector<std::shared_ptr<Object>> Object::getRelevantChildren() const { return m_children; }
std::string Object::getStandardPath() const { return m_name; }
bool Object::isDesignRootObject() const { return false; }
bool Object::isNominalRealization() const { return true; }

void Object::propagateTreeChanged(ObjectTreeChangeReasonEx reason,
                                  std::vector<std::shared_ptr<Object>> const& objects) {
  if (m_parent != nullptr) m_parent->propagateTreeChanged(reason, objects);
}

void Object::propagateTreeChanged(ObjectTreeChangeReasonEx reason, std::shared_ptr<Object> object) {
  if (m_parent != nullptr) m_parent->propagateTreeChanged(reason, object);
}

void Object::serialization_register(void* record) {
  fillRegistration<Object>(record, "Object", PersistenceArchiver::getCurrentVersion(0));
}

void Object::removeChild(std::shared_ptr<Object> child) {
  auto const found = m_childIndex.find(child.get());
  if (found == m_childIndex.end()) return;
  m_children.erase(m_children.begin() + static_cast<std::ptrdiff_t>(found->second));
  m_childIndex.clear();
  for (std::size_t i = 0; i < m_children.size(); ++i) m_childIndex[m_children[i].get()] = i;
  child->m_parent = nullptr;
  propagateTreeChanged(childRemoved, child);
}

Object* Object::getRootObject() { return m_parent != nullptr ? m_parent->getRootObject() : this; }

void Object::emitSigChanged() const {
  auto const connections = m_sigChanged;
  for (auto const& connection : connections) connection.call();
}

Signals::Connection Object::connectToSigChanged(Signals::Slot<void()> const& slot) {
  return m_sigChanged.emplace_back(slot);
}

bool Object::existChild(std::shared_ptr<Object const> child) const {
  return m_childIndex.contains(child.get());
}

void Object::setObjectName(std::string const& name) { m_name = name; }

void Object::setParentObject(Object* parent) { m_parent = parent; }

void Object::getUniqueChildIds(std::size_t count, std::vector<int>& ids) const {
  int largest = -1;
  for (auto const& child : m_children) largest = std::max(largest, child->m_childId);
  ids.clear();
  while (ids.size() < count) ids.push_back(++largest);
}

void Object::save(PersistenceArchiver& archive, unsigned int /*version*/) const {
  archive << m_name << static_cast<unsigned int>(m_childId);
}

void Object::load(PersistenceArchiver& archive, unsigned int /*version*/) {
  unsigned int childId = 0;
  archive >> m_name >> childId;
  m_childId = static_cast<int>(childId);
}

}  // namespace Kestrel
