#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "VantaService_Parameterization/ObjectTreeChangeReasonEx.h"
#include "VantaService_Parameterization/Signals.h"

namespace Kestrel {

class ArchiveAccess;
class PersistenceArchiver;

namespace StrictHost {
struct ObjectView;
}  // namespace StrictHost

class Object : public std::enable_shared_from_this<Object> {
 public:
  Object();
  Object(Object const&) = delete;

  virtual void registerInterfaces();
  virtual void unregisterInterfaces();
  virtual ~Object();
  virtual void convertKEDDataToCurrent();
  virtual void finalizeLoading();
  virtual bool blockFinalizeLoading() const;
  virtual std::vector<std::shared_ptr<Object>> getSigmaVariationParameters() const;
  virtual std::vector<std::shared_ptr<Object>> getRelevantChildren() const;
  virtual std::string getStandardPath() const;
  virtual bool isDesignRootObject() const;
  virtual bool isNominalRealization() const;
  virtual void propagateTreeChanged(ObjectTreeChangeReasonEx reason,
                                    std::vector<std::shared_ptr<Object>> const& objects);
  virtual void propagateTreeChanged(ObjectTreeChangeReasonEx reason, std::shared_ptr<Object> object);

  static void serialization_register(void* record);
  void removeChild(std::shared_ptr<Object> child);
  Object* getRootObject();
  void emitSigChanged() const;
  Signals::Connection connectToSigChanged(Signals::Slot<void()> const& slot);

 protected:
  bool existChild(std::shared_ptr<Object const> child) const;
  void setObjectName(std::string const& name);

 private:
  friend class ArchiveAccess;
  friend class ObjectHelper;
  friend struct StrictHost::ObjectView;

  void setParentObject(Object* parent);
  void getUniqueChildIds(std::size_t count, std::vector<int>& ids) const;
  void save(PersistenceArchiver& archive, unsigned int version) const;
  void load(PersistenceArchiver& archive, unsigned int version);

  std::string m_name;
  int m_childId = -1;
  Object* m_parent = nullptr;
  std::vector<std::shared_ptr<Object>> m_children;
  std::map<Object const*, std::size_t> m_childIndex;
  std::vector<Signals::Connection> m_sigChanged;
};

}  // namespace Kestrel
