#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "VantaService_PersistenceArchiver/ObjectRecord.h"

namespace Kestrel {

/// A document that holds the object and all that it writes.
template <typename T>
[[nodiscard]] std::string genDocument(std::shared_ptr<T> const& root) {
  PersistenceArchiver archive;
  savePointer(archive, root);
  return archive.genDocument();
}

/// The object that a document holds. An ArchiveException when there is none, or something behind it.
template <typename T>
[[nodiscard]] std::shared_ptr<T> loadDocument(std::string_view document) {
  PersistenceArchiver archive(document);
  std::shared_ptr<T> root;
  loadPointer(archive, root);
  if (!root) archive.handle_currupted_object("expected a " + registrationOf<T>().name + ", found nothing");
  archive.checkEndOfRecords();
  return root;
}

}  // namespace Kestrel
