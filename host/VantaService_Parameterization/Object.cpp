#include "VantaService_Parameterization/Object.h"

#include "VantaService_Parameterization/ChildList.h"

namespace Kestrel {

Object::Object() = default;

Object::~Object() {
  // A slot may hold the last reference to the object: the emission that calls it goes on without the object.
  if (m_sigChanged) m_sigChanged->disconnect_all_slots();
  if (m_children) m_children->forEach([](auto const& child) { child->m_parent = nullptr; });
}

void Object::registerInterfaces() {}

void Object::unregisterInterfaces() {}

void Object::convertKEDDataToCurrent() {}

void Object::finalizeLoading() {
  if (blockFinalizeLoading()) return;
  for (std::size_t i = 0; i < getChildCount(); ++i) getChild(i)->finalizeLoading();
}

bool Object::blockFinalizeLoading() const { return false; }

std::vector<std::shared_ptr<Object>> Object::getSigmaVariationParameters() const { return {}; }

std::vector<std::shared_ptr<Object>> Object::getRelevantChildren() const {
  std::vector<std::shared_ptr<Object>> children;
  children.reserve(getChildCount());
  if (m_children) m_children->forEach([&](auto const& child) { children.push_back(child); });
  return children;
}

std::string Object::getStandardPath() const {
  return m_parent != nullptr ? m_parent->getStandardPath() + '/' + m_name : m_name;
}

bool Object::isDesignRootObject() const { return false; }

bool Object::isNominalRealization() const { return true; }

void Object::propagateTreeChanged(ObjectTreeChangeReasonEx reason,
                                  std::vector<std::shared_ptr<Object>> const& objects) {
  if (m_parent != nullptr) m_parent->propagateTreeChanged(reason, objects);
}

void Object::propagateTreeChanged(ObjectTreeChangeReasonEx reason, std::shared_ptr<Object> object) {
  if (m_parent != nullptr) m_parent->propagateTreeChanged(reason, std::move(object));
}

Object* Object::getRootObject() noexcept {
  Object* root = this;
  while (root->m_parent != nullptr) root = root->m_parent;
  return root;
}

std::size_t Object::getChildCount() const noexcept { return m_children ? m_children->size() : 0; }

std::shared_ptr<Object> Object::getChild(std::size_t position) const { return m_children->at(position); }

std::optional<std::size_t> Object::getChildPosition(Object const& child) const {
  if (!m_children || !m_children->holds(child)) return std::nullopt;
  return m_children->positionOf(child);
}

void Object::removeChild(std::shared_ptr<Object> child) {
  if (!existChild(child)) return;
  m_children->remove(*child);
  child->setParentObject(nullptr);
  propagateTreeChanged(ObjectTreeChangeReasonEx::ChildRemoved, std::move(child));
}

void Object::emitSigChanged() const {
  // Keeps the signal while it calls the slots: one of them may destroy the object.
  if (auto const signal = m_sigChanged) (*signal)();
}

Signals::Connection Object::connectToSigChanged(Signals::Slot<void()> const& slot) {
  if (!m_sigChanged) m_sigChanged = std::make_shared<Signals::Signal<void()>>();
  return m_sigChanged->connect(slot);
}

bool Object::existChild(std::shared_ptr<Object const> child) const {
  return child && m_children && m_children->holds(*child);
}

void Object::setObjectName(std::string const& name) { m_name = name; }

void Object::getUniqueChildIds(std::size_t count, std::vector<int>& ids) const {
  if (m_children)
    m_children->genFreshIds(count, ids);
  else
    ChildList().genFreshIds(count, ids);
}

void Object::reserveChildren(std::size_t count) {
  if (!m_children) m_children = std::make_unique<ChildList>();
  m_children->reserve(count);
}

}  // namespace Kestrel
