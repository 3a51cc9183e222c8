#include "result_tables/study/LibPq.h"

#include <dlfcn.h>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

namespace {

class LoadedLibPq {
 public:
  LoadedLibPq() : m_handle(dlopen("libpq.so.5", RTLD_NOW | RTLD_LOCAL)) { failIfNull(m_handle); }

  template <typename Function>
  void find(Function& function, char const* name) const {
    void* const found = dlsym(m_handle, name);
    failIfNull(found);
    function = reinterpret_cast<Function>(found);
  }

 private:
  static void failIfNull(void const* pointer) {
    if (pointer != nullptr) return;
    throw Error(tr("PostgreSQL: expected its client library, which the package libpq5 has, found none ({})",
                   toPrintable(dlerror())));
  }

  void* m_handle;
};

LibPq loadLibPq() {
  LoadedLibPq const library;
  LibPq pq{};
  library.find(pq.conninfoParse, "PQconninfoParse");
  library.find(pq.conninfoFree, "PQconninfoFree");
  library.find(pq.freemem, "PQfreemem");
  library.find(pq.connectdbParams, "PQconnectdbParams");
  library.find(pq.finish, "PQfinish");
  library.find(pq.status, "PQstatus");
  library.find(pq.errorMessage, "PQerrorMessage");
  library.find(pq.setNoticeProcessor, "PQsetNoticeProcessor");
  library.find(pq.transactionStatus, "PQtransactionStatus");
  library.find(pq.exec, "PQexec");
  library.find(pq.execParams, "PQexecParams");
  library.find(pq.getResult, "PQgetResult");
  library.find(pq.clear, "PQclear");
  library.find(pq.resultStatus, "PQresultStatus");
  library.find(pq.resultErrorField, "PQresultErrorField");
  library.find(pq.ntuples, "PQntuples");
  library.find(pq.ftype, "PQftype");
  library.find(pq.getisnull, "PQgetisnull");
  library.find(pq.getvalue, "PQgetvalue");
  library.find(pq.getlength, "PQgetlength");
  library.find(pq.putCopyData, "PQputCopyData");
  library.find(pq.putCopyEnd, "PQputCopyEnd");
  return pq;
}

}  // namespace

LibPq const& libPq() {
  static LibPq const pq = loadLibPq();
  return pq;
}

}  // namespace Kestrel::ResultTables
