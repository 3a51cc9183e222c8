#pragma once

#include <libpq-fe.h>

namespace Kestrel::ResultTables {

/// What is used of PostgreSQL's client, loaded with the first call and never unloaded. An `Error` where it is
/// not installed.
struct LibPq {
  decltype(&PQconninfoParse) conninfoParse;
  decltype(&PQconninfoFree) conninfoFree;
  decltype(&PQfreemem) freemem;
  decltype(&PQconnectdbParams) connectdbParams;
  decltype(&PQfinish) finish;
  decltype(&PQstatus) status;
  decltype(&PQerrorMessage) errorMessage;
  decltype(&PQsetNoticeProcessor) setNoticeProcessor;
  decltype(&PQtransactionStatus) transactionStatus;
  decltype(&PQexec) exec;
  decltype(&PQexecParams) execParams;
  decltype(&PQgetResult) getResult;
  decltype(&PQclear) clear;
  decltype(&PQresultStatus) resultStatus;
  decltype(&PQresultErrorField) resultErrorField;
  decltype(&PQntuples) ntuples;
  decltype(&PQftype) ftype;
  decltype(&PQgetisnull) getisnull;
  decltype(&PQgetvalue) getvalue;
  decltype(&PQgetlength) getlength;
  decltype(&PQputCopyData) putCopyData;
  decltype(&PQputCopyEnd) putCopyEnd;
};

[[nodiscard]] LibPq const& libPq();

}  // namespace Kestrel::ResultTables
