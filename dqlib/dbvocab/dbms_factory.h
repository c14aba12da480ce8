// Factories that make the object of a platform.

#pragma once

#include "dqlib/dbvocab/dbms.h"

namespace dq {

/// Makes objects derived from `T` by platform: derived factories override the creators of the
/// platforms that they know.
template <typename T>
class CDBMSFactoryT {
 public:
  explicit CDBMSFactoryT(DBMS platform) : m_eDBMS(platform) {}
  CDBMSFactoryT(const CDBMSFactoryT&) = default;
  CDBMSFactoryT& operator=(const CDBMSFactoryT&) = default;
  virtual ~CDBMSFactoryT() = default;

  /// A new object for the platform, which the caller owns, or null if the factory makes none for
  /// it.
  virtual T* CreateObject() {
    PreCreateObject();
    T* const object = Create();
    PostCreateObject(object);
    return object;
  }
  /// Called around the creation, the second with the object, which may be null.
  virtual void PreCreateObject() {}
  virtual void PostCreateObject(T* /*object*/) {}

  /// The creators. Those that no derived factory overrides make what `CreateDefault` makes, which
  /// is null.
  virtual T* CreateDefault() { return nullptr; }
  virtual T* CreateSpare1() { return CreateDefault(); }
  virtual T* CreateSybase() { return CreateDefault(); }
  virtual T* CreateSQLServer() { return CreateDefault(); }
  virtual T* CreateOracle() { return CreateDefault(); }
  virtual T* CreateDB2() { return CreateDefault(); }
  virtual T* CreateDB2OS390() { return CreateDefault(); }
  virtual T* CreateSpare2() { return CreateDefault(); }
  virtual T* CreateSpare3() { return CreateDefault(); }
  virtual T* CreateSpare4() { return CreateDefault(); }
  virtual T* CreateSpare5() { return CreateDefault(); }

  DBMS GetDBMS() const { return m_eDBMS; }

 protected:
  DBMS m_eDBMS;

 private:
  /// A platform that was planned once; its number still reaches a creator of its own.
  static constexpr int kSparePlatform = 8;

  T* Create() {
    switch (static_cast<int>(m_eDBMS)) {
      case DBMS_SYBASE:
        return CreateSybase();
      case DBMS_SQLSERVER:
        return CreateSQLServer();
      case DBMS_DB2:
        return CreateDB2();
      case DBMS_ORACLE:
        return CreateOracle();
      case kSparePlatform:
        return CreateSpare5();
      case DBMS_DB2OS390:
        return CreateDB2OS390();
      default:
        return CreateDefault();
    }
  }
};

}  // namespace dq
