#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "VantaService_Parameterization/ObjectHelper.h"

namespace Kestrel::TestSupport {

/// What a node of the tree was told about a change.
struct TreeReport {
  ObjectTreeChangeReasonEx reason;
  std::vector<Object*> objects;
  bool isList;  ///< came through the operation that takes a list

  friend bool operator==(TreeReport const&, TreeReport const&) = default;
};

/// A named object that keeps the reports that reach it and passes them on.
class RecordingNode : public Object {
 public:
  explicit RecordingNode(std::string const& name = "") { setObjectName(name); }

  using Object::existChild;
  using Object::setObjectName;

  void propagateTreeChanged(ObjectTreeChangeReasonEx reason,
                            std::vector<std::shared_ptr<Object>> const& objects) override {
    TreeReport report{reason, {}, true};
    for (auto const& object : objects) report.objects.push_back(object.get());
    m_reports.push_back(report);
    Object::propagateTreeChanged(reason, objects);
  }
  void propagateTreeChanged(ObjectTreeChangeReasonEx reason, std::shared_ptr<Object> object) override {
    m_reports.push_back({reason, {object.get()}, false});
    Object::propagateTreeChanged(reason, std::move(object));
  }

  [[nodiscard]] std::vector<TreeReport> const& getReports() const { return m_reports; }
  void forgetReports() { m_reports.clear(); }

 private:
  std::vector<TreeReport> m_reports;
};

using NodeList = std::vector<std::shared_ptr<RecordingNode>>;

/// New nodes with the given names.
inline NodeList genNodes(std::vector<std::string> const& names) {
  NodeList nodes;
  for (auto const& name : names) nodes.push_back(std::make_shared<RecordingNode>(name));
  return nodes;
}

/// Makes `nodes` the last children of `parent`, with fresh ids.
inline void addChildren(Object& parent, NodeList const& nodes) {
  NodeList ignored;
  ObjectHelper::addToVectorAtEnd(&parent, nodes, ignored, std::nullopt, 1, false);
}

inline std::vector<std::string> namesOf(std::vector<std::shared_ptr<Object>> const& objects) {
  std::vector<std::string> names;
  names.reserve(objects.size());
  for (auto const& object : objects) names.push_back(object->getObjectName());
  return names;
}

inline std::vector<std::string> childNamesOf(Object const& parent) {
  return namesOf(parent.getRelevantChildren());
}

inline std::vector<int> childIdsOf(Object const& parent) {
  std::vector<int> ids;
  for (auto const& child : parent.getRelevantChildren()) ids.push_back(child->getChildId());
  return ids;
}

}  // namespace Kestrel::TestSupport
