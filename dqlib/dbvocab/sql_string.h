// Words and small texts of SQL that the tools share.

#pragma once

#include <span>

#include "dqlib/framework/base/c_string.h"

namespace dq {

/// SQL keywords, operators, function names, labels of plan output and formats, by name. The values
/// never change. Case is part of each; some names differ from one another by case alone, and some
/// values stand under several names, because callers grew up with both.
class CSQLString : public CString {
 public:
  static const CString m_pszMlsLabel;
  static const CString m_pszSqrRgtBrace;
  static const CString m_pszSqrLftBrace;
  static const CString m_pszMultiset;
  static const CString m_pszCast;
  static const CString m_pszIsNotNull;
  static const CString m_pszIsNull;
  static const CString m_pszNotLike;
  static const CString m_pszNotExists;
  static const CString m_pszNotBetween;
  static const CString m_pszNotIn;
  static const CString m_pszNotEq1;
  static const CString m_pszNotEQ;
  static const CString m_pszLE;
  static const CString m_pszGE;
  static const CString m_pszEQ;
  static const CString m_pszGT;
  static const CString m_pszLT;
  static const CString m_pszLogAnd;
  static const CString m_pszLogOR;
  static const CString m_pszPower;
  static const CString m_pszMod;
  static const CString m_pszDivide;
  static const CString m_pszQuoteStr;
  static const CString m_pszRollUp;
  static const CString m_pszCube;
  static const CString m_pszConstraint;
  static const CString m_pszBlock;
  static const CString m_pszSample;
  static const CString m_pszPartition;
  static const CString m_pszSubPartition;
  static const CString m_pszSubtract;
  static const CString m_pszPlus;
  static const CString m_pszEOL;
  static const CString m_pszSemiColon;
  static const CString m_pszAddMonths;
  static const CString m_pszToDate;
  static const CString m_pszRPad;
  static const CString m_pszSign;
  static const CString m_pszDecode;
  static const CString m_pszNvl;
  static const CString m_pszToChar;
  static const CString m_pszTrunc;
  static const CString m_pszRound;
  static const CString m_pszLength;
  static const CString m_pszSubStr;
  static const CString m_pszAbs;
  static const CString m_pszSome;
  static const CString m_pszEscape;
  static const CString m_pszUser;
  static const CString m_pszUid;
  static const CString m_pszSysDate;
  static const CString m_pszRowNum;
  static const CString m_pszRowLabel;
  static const CString m_pszRowId;
  static const CString m_pszLevel;
  static const CString m_pszof;
  static const CString m_pszPrior;
  static const CString m_pszExists;
  static const CString m_pszOnly;
  static const CString m_pszRead;
  static const CString m_pszTo;
  static const CString m_pszNoWait;
  static const CString m_pszLike;
  static const CString m_pszDesc;
  static const CString m_pszAudit;
  static const CString m_pszAsc;
  static const CString m_pszAny;
  static const CString m_pszIn;
  static const CString m_pszCommaSpace;
  static const CString m_pszColon;
  static const CString m_pszHyphen;
  static const CString m_pszNestedSelect;
  static const CString m_pszTrigger;
  static const CString m_pszPkgSpec;
  static const CString m_pszPkgBody;
  static const CString m_pszProcedure;
  static const CString m_pszPublic;
  static const CString m_pszNull;
  static const CString m_pszis;
  static const CString m_pszAt;
  static const CString m_pszAs;
  static const CString m_pszSYS;
  static const CString m_pszBackSlash;
  static const CString m_pszDoubleQuote;
  static const CString m_pszSingleQuote;
  static const CString m_pszHashIndex;
  static const CString m_pszSequence;
  static const CString m_pszTable;
  static const CString m_pszCmntEnd;
  static const CString m_pszComment;
  static const CString m_pszHintStr1;
  static const CString m_pszHintStr;
  static const CString m_pszComment1;
  static const CString m_pszHintStr2;
  static const CString m_pszInto;
  static const CString m_pszView;
  static const CString m_pszFixedTbl;
  static const CString m_pszX;
  static const CString m_pszOpenR;
  static const CString m_pszOpenA;
  static const CString m_pszOpenW;
  static const CString m_pszLongRaw;
  static const CString m_pszLongType;
  static const CString m_pszDate;
  static const CString m_pszValues;
  static const CString m_pszSet;
  static const CString m_pszOr;
  static const CString m_pszAnd;
  static const CString m_pszWhere;
  static const CString m_pszBetween;
  static const CString m_pszFrom;
  static const CString m_pszFTDelete;
  static const CString m_pszFTUpdate;
  static const CString m_pszFTSelect;
  static const CString m_pszFTInsert;
  static const CString m_pszRb;
  static const CString m_pszDouble1Fmt;
  static const CString m_pszDouble0Fmt;
  static const CString m_pszDoubleFmt;
  static const CString m_pszIntFmt;
  static const CString m_pszLongFmt;
  static const CString m_pszEmpty;
  static const CString m_pszValid;
  static const CString m_pszOption;
  static const CString m_pszCheck;
  static const CString m_pszWith;
  static const CString m_pszDisabled;
  static const CString m_pszINDEX1;
  static const CString m_pszAlter;
  static const CString m_pszChar;
  static const CString m_pszRaw;
  static const CString m_pszVarChar2;
  static const CString m_pszVarChar;
  static const CString m_pszFloat;
  static const CString m_pszNumber;
  static const CString m_pszEnabled;
  static const CString m_pszFK;
  static const CString m_pszFK1;
  static const CString m_pszPK;
  static const CString m_pszOne;
  static const CString m_pszZero;
  static const CString m_pszYYYY;
  static const CString m_pszYY;
  static const CString m_pszPeriod;
  static const CString m_pszComma;
  static const CString m_pszYYMMDD;
  static const CString m_pszMMDDYY;
  static const CString m_pszDDMMYY;
  static const CString m_pszMONDDYY;
  static const CString m_pszDDMONYY;
  static const CString m_pszCourierNew;
  static const CString m_pszEndOfLn;
  static const CString m_pszPackage;
  static const CString m_pszStar;
  static const CString m_pszHash;
  static const CString m_pszNot;
  static const CString m_pszDistinct;
  static const CString m_pszVariance;
  static const CString m_pszSum;
  static const CString m_pszStddev;
  static const CString m_pszMin;
  static const CString m_pszMax;
  static const CString m_pszLub;
  static const CString m_pszGlb;
  static const CString m_pszCount;
  static const CString m_pszAvg;
  static const CString m_pszGroup;
  static const CString m_pszConnect;
  static const CString m_pszStart;
  static const CString m_pszHaving;
  static const CString m_pszFor;
  static const CString m_pszBy;
  static const CString m_pszOrder;
  static const CString m_pszAll;
  static const CString m_pszIntersect;
  static const CString m_pszMinus;
  static const CString m_pszUnion;
  static const CString m_pszRightBrace;
  static const CString m_pszLeftBrace;
  static const CString m_pszINSERT;
  static const CString m_pszUPDATE;
  static const CString m_pszDELETE;
  static const CString m_pszSELECT;
  static const CString m_pszDefault;
  static const CString m_pszFalse;
  static const CString m_pszSYN;
  static const CString m_pszPercent;
  static const CString m_pszlf;
  static const CString m_pszIndex;
  static const CString m_pszCluster;
  static const CString m_pszSpace;
  static const CString m_pszNonUnique;
  static const CString m_pszUnique;
  static const CString m_pszNo1;
  static const CString m_pszNo;
  static const CString m_pszYes1;
  static const CString m_pszYes;
};

/// One of the words: its member's name, and the word.
struct SqlWord {
  const char* name;
  const CString* value;
};

/// All of them, in the order of the members.
std::span<const SqlWord> SqlWords();

}  // namespace dq
