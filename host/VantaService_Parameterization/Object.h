#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "VantaService_Parameterization/ObjectTreeChangeReasonEx.h"
#include "VantaService_Parameterization/Signals.h"

namespace Kestrel {

class ArchiveAccess;
class ChildList;
class PersistenceArchiver;

/// A node of the persistent object tree: ordered children, which it owns, a link to its parent, a name, a
/// child id and a changed signal.
///
/// Objects are created with std::make_shared; a parent shares the ownership of its children. An object that
/// is destroyed leaves its surviving children without a parent and its slots disconnected. Children come and
/// go through `ObjectHelper` and `removeChild`; the children keep their order whatever is removed. There are
/// no cycles: an object never becomes the child of itself or of its descendants.
///
/// Names and child ids are kept when an object leaves its parent.
///
/// Threads: a tree belongs to one thread; nothing here locks.
///
/// Errors: the operations throw what the standard containers throw (out of memory); `noexcept` is said where
/// it holds. What a slot or an override of a virtual operation throws reaches the caller of the operation.
///
/// Cost: an object without children and observers allocates nothing but itself and its name.
class Object : public std::enable_shared_from_this<Object> {
 public:
  /// Child id of an object that never got one.
  static constexpr int noChildId = -1;

  /// No parent, no children, an empty name, no child id.
  Object();
  Object(Object const&) = delete;
  Object& operator=(Object const&) = delete;

  // The order of the virtual operations is part of the binary interface.

  /// Called when the object's interfaces are to be made known; nothing to do here.
  virtual void registerInterfaces();
  /// Called when they are to be withdrawn; nothing to do here.
  virtual void unregisterInterfaces();

  virtual ~Object();

  /// Brings data of an older document up to date; nothing to do here.
  virtual void convertKEDDataToCurrent();
  /// Called on the root after a document has been read; passes on to the children in their order. An object
  /// whose `blockFinalizeLoading` is true is left out, with all below it.
  virtual void finalizeLoading();
  [[nodiscard]] virtual bool blockFinalizeLoading() const;  ///< false

  /// The objects that are varied in a sigma analysis; none.
  [[nodiscard]] virtual std::vector<std::shared_ptr<Object>> getSigmaVariationParameters() const;
  /// The children that count for the object's content, in order; all of them.
  [[nodiscard]] virtual std::vector<std::shared_ptr<Object>> getRelevantChildren() const;
  /// The names from the root to the object, joined by "/".
  [[nodiscard]] virtual std::string getStandardPath() const;
  [[nodiscard]] virtual bool isDesignRootObject() const;    ///< false
  [[nodiscard]] virtual bool isNominalRealization() const;  ///< true

  /// Reports a change of the tree at or below the object to all objects from here up to the root: `objects`
  /// are the ones that came or went, in order. An override calls the base to pass the report on. The tree has
  /// changed already; what an override throws does not undo it.
  virtual void propagateTreeChanged(ObjectTreeChangeReasonEx reason,
                                    std::vector<std::shared_ptr<Object>> const& objects);
  /// The same for a single object.
  virtual void propagateTreeChanged(ObjectTreeChangeReasonEx reason, std::shared_ptr<Object> object);

  /// Fills `record` (a `BaseClassRegister`) with the entry under which the archive stores the `Object` part.
  static void serialization_register(void* record);

  [[nodiscard]] Object* getParentObject() const noexcept { return m_parent; }  ///< null at the root
  /// The topmost object above this one; the object itself when it has no parent. O(depth).
  [[nodiscard]] Object* getRootObject() noexcept;
  /// Valid until the object is named again or destroyed.
  [[nodiscard]] std::string const& getObjectName() const noexcept;
  /// Number that no other child of the parent has, when `ObjectHelper` was asked for fresh ids.
  [[nodiscard]] int getChildId() const noexcept { return m_childId; }

  /// Number of children.
  [[nodiscard]] std::size_t getChildCount() const noexcept;
  /// The child at a position of the list of children. O(log n). REQUIRES: position < getChildCount().
  [[nodiscard]] std::shared_ptr<Object> getChild(std::size_t position) const;
  /// Position in the list of children; nothing for an object that is no child of this one. O(log n).
  [[nodiscard]] std::optional<std::size_t> getChildPosition(Object const& child) const;

  /// Detaches a child and reports `ChildRemoved` with it from this object up to the root. The others keep
  /// their order. An empty pointer or an object that is no child of this one changes and reports nothing.
  /// O(log n), without allocation.
  void removeChild(std::shared_ptr<Object> child);

  /// Calls the slots that are connected to the changed signal, in the order in which they were connected. A
  /// slot may disconnect itself or others, emit again, or destroy the object: then the remaining slots are
  /// not called.
  void emitSigChanged() const;
  /// Calls `slot` on every change until the returned connection is disconnected or the object destroyed.
  Signals::Connection connectToSigChanged(Signals::Slot<void()> const& slot);

 protected:
  /// Whether the object is among the children. O(1).
  [[nodiscard]] bool existChild(std::shared_ptr<Object const> child) const;
  /// Names the object; tells nobody.
  void setObjectName(std::string const& name);

 private:
  friend class ArchiveAccess;
  friend class ChildList;
  friend class ObjectHelper;
  friend struct ObjectTestAccess;

  /// What few objects have.
  struct Attachments;

  /// The `Object` part: name, child id and the links of the tree. Children are written by the classes that
  /// hold them, not here; the part of a child that is written inside its parent's record says which of the
  /// parent's children it is.
  void save(PersistenceArchiver& archive, unsigned int version) const;
  /// Fills a new object. An object that was a child becomes one again as soon as its part has been read, at
  /// the position and with the child id that it had; children that were not written leave no gap. Reports
  /// nothing.
  void load(PersistenceArchiver& archive, unsigned int version);
  void loadParentLink(PersistenceArchiver& archive);
  void loadChildIds(PersistenceArchiver& archive);

  void setParentObject(Object* parent) noexcept { m_parent = parent; }
  void setSharedName(std::shared_ptr<std::string const> name) noexcept { m_name = std::move(name); }
  /// Fills `ids` with `count` child ids that no child has yet, see `ChildList::genFreshIds`.
  void getUniqueChildIds(std::size_t count, std::vector<int>& ids) const;
  /// Makes room for `count` more children.
  void reserveChildren(std::size_t count);
  /// REQUIRES: room, and the object as the child's parent.
  void appendChild(std::shared_ptr<Object> const& child) noexcept;
  [[nodiscard]] bool hasChild(Object const& child) const noexcept;
  /// Takes a child out of the list of children, the later one of two, and unlinks it when it was the only
  /// one. REQUIRES: hasChild(child).
  void detachChild(Object& child) noexcept;

  [[nodiscard]] Attachments& getAttachments();

  // What a move from one parent to another touches lies together.
  Object* m_parent = nullptr;
  std::uint32_t m_slot = 0;  ///< of the parent's list; kept by that list
  int m_childId = noChildId;
  std::shared_ptr<std::string const> m_name;   ///< shared by objects that were named together
  std::unique_ptr<Attachments> m_attachments;  ///< made for the first child or slot
};

}  // namespace Kestrel
