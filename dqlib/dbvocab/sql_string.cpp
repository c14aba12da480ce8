#include "dqlib/dbvocab/sql_string.h"

namespace dq {

// Built from the last member to the first, the order in which earlier releases built them.
const CString CSQLString::m_pszYes("Y");
const CString CSQLString::m_pszYes1("YES");
const CString CSQLString::m_pszNo("N");
const CString CSQLString::m_pszNo1("NO");
const CString CSQLString::m_pszUnique("UNIQUE");
const CString CSQLString::m_pszNonUnique("Non-Unique");
const CString CSQLString::m_pszSpace(" ");
const CString CSQLString::m_pszCluster("Cluster");
const CString CSQLString::m_pszIndex("Index");
const CString CSQLString::m_pszlf("%lf");
const CString CSQLString::m_pszPercent("%");
const CString CSQLString::m_pszSYN("SYNONYM");
const CString CSQLString::m_pszFalse("FALSE");
const CString CSQLString::m_pszDefault("**Default**");
const CString CSQLString::m_pszSELECT("SELECT");
const CString CSQLString::m_pszDELETE("DELETE");
const CString CSQLString::m_pszUPDATE("UPDATE");
const CString CSQLString::m_pszINSERT("INSERT");
const CString CSQLString::m_pszLeftBrace("(");
const CString CSQLString::m_pszRightBrace(")");
const CString CSQLString::m_pszUnion("UNION");
const CString CSQLString::m_pszMinus("MINUS");
const CString CSQLString::m_pszIntersect("INTERSECT");
const CString CSQLString::m_pszAll("ALL");
const CString CSQLString::m_pszOrder("ORDER");
const CString CSQLString::m_pszBy("BY");
const CString CSQLString::m_pszFor("FOR");
const CString CSQLString::m_pszHaving("HAVING");
const CString CSQLString::m_pszStart("START");
const CString CSQLString::m_pszConnect("CONNECT");
const CString CSQLString::m_pszGroup("GROUP");
const CString CSQLString::m_pszAvg("avg");
const CString CSQLString::m_pszCount("count");
const CString CSQLString::m_pszGlb("glb");
const CString CSQLString::m_pszLub("lub");
const CString CSQLString::m_pszMax("max");
const CString CSQLString::m_pszMin("min");
const CString CSQLString::m_pszStddev("stddev");
const CString CSQLString::m_pszSum("sum");
const CString CSQLString::m_pszVariance("variance");
const CString CSQLString::m_pszDistinct("DISTINCT");
const CString CSQLString::m_pszNot("NOT");
const CString CSQLString::m_pszHash("HASH");
const CString CSQLString::m_pszStar("*");
const CString CSQLString::m_pszPackage("PACKAGE");
const CString CSQLString::m_pszEndOfLn("\r\n");
const CString CSQLString::m_pszCourierNew("Courier New");
const CString CSQLString::m_pszDDMONYY("DDMONYY");
const CString CSQLString::m_pszMONDDYY("MONDDYY");
const CString CSQLString::m_pszDDMMYY("DDMMYY");
const CString CSQLString::m_pszMMDDYY("MMDDYY");
const CString CSQLString::m_pszYYMMDD("YYMMDD");
const CString CSQLString::m_pszComma(",");
const CString CSQLString::m_pszPeriod(".");
const CString CSQLString::m_pszYY("YY");
const CString CSQLString::m_pszYYYY("YYYY");
const CString CSQLString::m_pszZero("0");
const CString CSQLString::m_pszOne("1");
const CString CSQLString::m_pszPK("PK");
const CString CSQLString::m_pszFK1("*FK");
const CString CSQLString::m_pszFK("FK");
const CString CSQLString::m_pszEnabled("ENABLED");
const CString CSQLString::m_pszNumber("NUMBER");
const CString CSQLString::m_pszFloat("FLOAT");
const CString CSQLString::m_pszVarChar("VARCHAR");
const CString CSQLString::m_pszVarChar2("VARCHAR2");
const CString CSQLString::m_pszRaw("RAW");
const CString CSQLString::m_pszChar("CHAR");
const CString CSQLString::m_pszAlter("ALTER");
const CString CSQLString::m_pszINDEX1("INDEX");
const CString CSQLString::m_pszDisabled("DISABLED");
const CString CSQLString::m_pszWith("WITH");
const CString CSQLString::m_pszCheck("CHECK");
const CString CSQLString::m_pszOption("OPTION");
const CString CSQLString::m_pszValid("VALID");
const CString CSQLString::m_pszEmpty("");
const CString CSQLString::m_pszLongFmt("%ld");
const CString CSQLString::m_pszIntFmt("%d");
const CString CSQLString::m_pszDoubleFmt("%.2lf");
const CString CSQLString::m_pszDouble0Fmt("%.0lf");
const CString CSQLString::m_pszDouble1Fmt("%lf");
const CString CSQLString::m_pszRb("rb");
const CString CSQLString::m_pszFTInsert("I");
const CString CSQLString::m_pszFTSelect("S");
const CString CSQLString::m_pszFTUpdate("U");
const CString CSQLString::m_pszFTDelete("D");
const CString CSQLString::m_pszFrom("FROM");
const CString CSQLString::m_pszBetween("BETWEEN");
const CString CSQLString::m_pszWhere("WHERE");
const CString CSQLString::m_pszAnd("AND");
const CString CSQLString::m_pszOr("OR");
const CString CSQLString::m_pszSet("SET");
const CString CSQLString::m_pszValues("VALUES");
const CString CSQLString::m_pszDate("DATE");
const CString CSQLString::m_pszLongType("LONG");
const CString CSQLString::m_pszLongRaw("LONG RAW");
const CString CSQLString::m_pszOpenW("w");
const CString CSQLString::m_pszOpenA("a");
const CString CSQLString::m_pszOpenR("r");
const CString CSQLString::m_pszX("X");
const CString CSQLString::m_pszFixedTbl("FIXED TABLE");
const CString CSQLString::m_pszView("VIEW");
const CString CSQLString::m_pszInto("into");
const CString CSQLString::m_pszHintStr2("--+");
const CString CSQLString::m_pszComment1("--");
const CString CSQLString::m_pszHintStr("/*+");
const CString CSQLString::m_pszHintStr1("/*-");
const CString CSQLString::m_pszComment("/*");
const CString CSQLString::m_pszCmntEnd("*/");
const CString CSQLString::m_pszTable("TABLE");
const CString CSQLString::m_pszSequence("SEQUENCE");
const CString CSQLString::m_pszHashIndex("**HASH INDEX**");
const CString CSQLString::m_pszSingleQuote("'");
const CString CSQLString::m_pszDoubleQuote("\"");
const CString CSQLString::m_pszBackSlash("\\");
const CString CSQLString::m_pszSYS("SYS");
const CString CSQLString::m_pszAs("as");
const CString CSQLString::m_pszAt("@");
const CString CSQLString::m_pszis("is");
const CString CSQLString::m_pszNull("NULL");
const CString CSQLString::m_pszPublic("PUBLIC");
const CString CSQLString::m_pszProcedure("PROCEDURE");
const CString CSQLString::m_pszPkgBody("PACKAGE BODY");
const CString CSQLString::m_pszPkgSpec("PACKAGE SPEC");
const CString CSQLString::m_pszTrigger("TRIGGER");
const CString CSQLString::m_pszNestedSelect("NESTED SELECT");
const CString CSQLString::m_pszHyphen(" - ");
const CString CSQLString::m_pszColon(":");
const CString CSQLString::m_pszCommaSpace(", ");
const CString CSQLString::m_pszIn("IN");
const CString CSQLString::m_pszAny("ANY");
const CString CSQLString::m_pszAsc("ASC");
const CString CSQLString::m_pszAudit("audit");
const CString CSQLString::m_pszDesc("DESC");
const CString CSQLString::m_pszLike("LIKE");
const CString CSQLString::m_pszNoWait("NOWAIT");
const CString CSQLString::m_pszTo("to");
const CString CSQLString::m_pszRead("READ");
const CString CSQLString::m_pszOnly("ONLY");
const CString CSQLString::m_pszExists("EXISTS");
const CString CSQLString::m_pszPrior("PRIOR");
const CString CSQLString::m_pszof("OF");
const CString CSQLString::m_pszLevel("level");
const CString CSQLString::m_pszRowId("ROWID");
const CString CSQLString::m_pszRowLabel("rowlabel");
const CString CSQLString::m_pszRowNum("ROWNUM");
const CString CSQLString::m_pszSysDate("SYSDATE");
const CString CSQLString::m_pszUid("UID");
const CString CSQLString::m_pszUser("USER");
const CString CSQLString::m_pszEscape("ESCAPE");
const CString CSQLString::m_pszSome("SOME");
const CString CSQLString::m_pszAbs("abs");
const CString CSQLString::m_pszSubStr("substr");
const CString CSQLString::m_pszLength("length");
const CString CSQLString::m_pszRound("round");
const CString CSQLString::m_pszTrunc("trunc");
const CString CSQLString::m_pszToChar("TO_CHAR");
const CString CSQLString::m_pszNvl("nvl");
const CString CSQLString::m_pszDecode("decode");
const CString CSQLString::m_pszSign("SIGN");
const CString CSQLString::m_pszRPad("rpad");
const CString CSQLString::m_pszToDate("TO_DATE");
const CString CSQLString::m_pszAddMonths("ADD_MONTHS");
const CString CSQLString::m_pszSemiColon(";");
const CString CSQLString::m_pszEOL("\n");
const CString CSQLString::m_pszPlus("+");
const CString CSQLString::m_pszSubtract("-");
const CString CSQLString::m_pszSubPartition("SUBPARTITION");
const CString CSQLString::m_pszPartition("PARTITION");
const CString CSQLString::m_pszSample("SAMPLE");
const CString CSQLString::m_pszBlock("BLOCK");
const CString CSQLString::m_pszConstraint("CONSTRAINT");
const CString CSQLString::m_pszCube("CUBE");
const CString CSQLString::m_pszRollUp("ROLLUP");
const CString CSQLString::m_pszQuoteStr("''");
const CString CSQLString::m_pszDivide("/");
const CString CSQLString::m_pszMod("%");
const CString CSQLString::m_pszPower("**");
const CString CSQLString::m_pszLogOR("||");
const CString CSQLString::m_pszLogAnd("&&");
const CString CSQLString::m_pszLT("<");
const CString CSQLString::m_pszGT(">");
const CString CSQLString::m_pszEQ("=");
const CString CSQLString::m_pszGE(">=");
const CString CSQLString::m_pszLE("<=");
const CString CSQLString::m_pszNotEQ("!=");
const CString CSQLString::m_pszNotEq1("<>");
const CString CSQLString::m_pszNotIn("NOT IN");
const CString CSQLString::m_pszNotBetween("NOT BETWEEN");
const CString CSQLString::m_pszNotExists("NOT EXISTS");
const CString CSQLString::m_pszNotLike("NOT LIKE");
const CString CSQLString::m_pszIsNull("IS NULL");
const CString CSQLString::m_pszIsNotNull("IS NOT NULL");
const CString CSQLString::m_pszCast("CAST");
const CString CSQLString::m_pszMultiset("MULTISET");
const CString CSQLString::m_pszSqrLftBrace("[");
const CString CSQLString::m_pszSqrRgtBrace("]");
const CString CSQLString::m_pszMlsLabel("MLSLABEL");

std::span<const SqlWord> SqlWords() {
  static const SqlWord kWords[] = {
      {"m_pszMlsLabel", &CSQLString::m_pszMlsLabel},
      {"m_pszSqrRgtBrace", &CSQLString::m_pszSqrRgtBrace},
      {"m_pszSqrLftBrace", &CSQLString::m_pszSqrLftBrace},
      {"m_pszMultiset", &CSQLString::m_pszMultiset},
      {"m_pszCast", &CSQLString::m_pszCast},
      {"m_pszIsNotNull", &CSQLString::m_pszIsNotNull},
      {"m_pszIsNull", &CSQLString::m_pszIsNull},
      {"m_pszNotLike", &CSQLString::m_pszNotLike},
      {"m_pszNotExists", &CSQLString::m_pszNotExists},
      {"m_pszNotBetween", &CSQLString::m_pszNotBetween},
      {"m_pszNotIn", &CSQLString::m_pszNotIn},
      {"m_pszNotEq1", &CSQLString::m_pszNotEq1},
      {"m_pszNotEQ", &CSQLString::m_pszNotEQ},
      {"m_pszLE", &CSQLString::m_pszLE},
      {"m_pszGE", &CSQLString::m_pszGE},
      {"m_pszEQ", &CSQLString::m_pszEQ},
      {"m_pszGT", &CSQLString::m_pszGT},
      {"m_pszLT", &CSQLString::m_pszLT},
      {"m_pszLogAnd", &CSQLString::m_pszLogAnd},
      {"m_pszLogOR", &CSQLString::m_pszLogOR},
      {"m_pszPower", &CSQLString::m_pszPower},
      {"m_pszMod", &CSQLString::m_pszMod},
      {"m_pszDivide", &CSQLString::m_pszDivide},
      {"m_pszQuoteStr", &CSQLString::m_pszQuoteStr},
      {"m_pszRollUp", &CSQLString::m_pszRollUp},
      {"m_pszCube", &CSQLString::m_pszCube},
      {"m_pszConstraint", &CSQLString::m_pszConstraint},
      {"m_pszBlock", &CSQLString::m_pszBlock},
      {"m_pszSample", &CSQLString::m_pszSample},
      {"m_pszPartition", &CSQLString::m_pszPartition},
      {"m_pszSubPartition", &CSQLString::m_pszSubPartition},
      {"m_pszSubtract", &CSQLString::m_pszSubtract},
      {"m_pszPlus", &CSQLString::m_pszPlus},
      {"m_pszEOL", &CSQLString::m_pszEOL},
      {"m_pszSemiColon", &CSQLString::m_pszSemiColon},
      {"m_pszAddMonths", &CSQLString::m_pszAddMonths},
      {"m_pszToDate", &CSQLString::m_pszToDate},
      {"m_pszRPad", &CSQLString::m_pszRPad},
      {"m_pszSign", &CSQLString::m_pszSign},
      {"m_pszDecode", &CSQLString::m_pszDecode},
      {"m_pszNvl", &CSQLString::m_pszNvl},
      {"m_pszToChar", &CSQLString::m_pszToChar},
      {"m_pszTrunc", &CSQLString::m_pszTrunc},
      {"m_pszRound", &CSQLString::m_pszRound},
      {"m_pszLength", &CSQLString::m_pszLength},
      {"m_pszSubStr", &CSQLString::m_pszSubStr},
      {"m_pszAbs", &CSQLString::m_pszAbs},
      {"m_pszSome", &CSQLString::m_pszSome},
      {"m_pszEscape", &CSQLString::m_pszEscape},
      {"m_pszUser", &CSQLString::m_pszUser},
      {"m_pszUid", &CSQLString::m_pszUid},
      {"m_pszSysDate", &CSQLString::m_pszSysDate},
      {"m_pszRowNum", &CSQLString::m_pszRowNum},
      {"m_pszRowLabel", &CSQLString::m_pszRowLabel},
      {"m_pszRowId", &CSQLString::m_pszRowId},
      {"m_pszLevel", &CSQLString::m_pszLevel},
      {"m_pszof", &CSQLString::m_pszof},
      {"m_pszPrior", &CSQLString::m_pszPrior},
      {"m_pszExists", &CSQLString::m_pszExists},
      {"m_pszOnly", &CSQLString::m_pszOnly},
      {"m_pszRead", &CSQLString::m_pszRead},
      {"m_pszTo", &CSQLString::m_pszTo},
      {"m_pszNoWait", &CSQLString::m_pszNoWait},
      {"m_pszLike", &CSQLString::m_pszLike},
      {"m_pszDesc", &CSQLString::m_pszDesc},
      {"m_pszAudit", &CSQLString::m_pszAudit},
      {"m_pszAsc", &CSQLString::m_pszAsc},
      {"m_pszAny", &CSQLString::m_pszAny},
      {"m_pszIn", &CSQLString::m_pszIn},
      {"m_pszCommaSpace", &CSQLString::m_pszCommaSpace},
      {"m_pszColon", &CSQLString::m_pszColon},
      {"m_pszHyphen", &CSQLString::m_pszHyphen},
      {"m_pszNestedSelect", &CSQLString::m_pszNestedSelect},
      {"m_pszTrigger", &CSQLString::m_pszTrigger},
      {"m_pszPkgSpec", &CSQLString::m_pszPkgSpec},
      {"m_pszPkgBody", &CSQLString::m_pszPkgBody},
      {"m_pszProcedure", &CSQLString::m_pszProcedure},
      {"m_pszPublic", &CSQLString::m_pszPublic},
      {"m_pszNull", &CSQLString::m_pszNull},
      {"m_pszis", &CSQLString::m_pszis},
      {"m_pszAt", &CSQLString::m_pszAt},
      {"m_pszAs", &CSQLString::m_pszAs},
      {"m_pszSYS", &CSQLString::m_pszSYS},
      {"m_pszBackSlash", &CSQLString::m_pszBackSlash},
      {"m_pszDoubleQuote", &CSQLString::m_pszDoubleQuote},
      {"m_pszSingleQuote", &CSQLString::m_pszSingleQuote},
      {"m_pszHashIndex", &CSQLString::m_pszHashIndex},
      {"m_pszSequence", &CSQLString::m_pszSequence},
      {"m_pszTable", &CSQLString::m_pszTable},
      {"m_pszCmntEnd", &CSQLString::m_pszCmntEnd},
      {"m_pszComment", &CSQLString::m_pszComment},
      {"m_pszHintStr1", &CSQLString::m_pszHintStr1},
      {"m_pszHintStr", &CSQLString::m_pszHintStr},
      {"m_pszComment1", &CSQLString::m_pszComment1},
      {"m_pszHintStr2", &CSQLString::m_pszHintStr2},
      {"m_pszInto", &CSQLString::m_pszInto},
      {"m_pszView", &CSQLString::m_pszView},
      {"m_pszFixedTbl", &CSQLString::m_pszFixedTbl},
      {"m_pszX", &CSQLString::m_pszX},
      {"m_pszOpenR", &CSQLString::m_pszOpenR},
      {"m_pszOpenA", &CSQLString::m_pszOpenA},
      {"m_pszOpenW", &CSQLString::m_pszOpenW},
      {"m_pszLongRaw", &CSQLString::m_pszLongRaw},
      {"m_pszLongType", &CSQLString::m_pszLongType},
      {"m_pszDate", &CSQLString::m_pszDate},
      {"m_pszValues", &CSQLString::m_pszValues},
      {"m_pszSet", &CSQLString::m_pszSet},
      {"m_pszOr", &CSQLString::m_pszOr},
      {"m_pszAnd", &CSQLString::m_pszAnd},
      {"m_pszWhere", &CSQLString::m_pszWhere},
      {"m_pszBetween", &CSQLString::m_pszBetween},
      {"m_pszFrom", &CSQLString::m_pszFrom},
      {"m_pszFTDelete", &CSQLString::m_pszFTDelete},
      {"m_pszFTUpdate", &CSQLString::m_pszFTUpdate},
      {"m_pszFTSelect", &CSQLString::m_pszFTSelect},
      {"m_pszFTInsert", &CSQLString::m_pszFTInsert},
      {"m_pszRb", &CSQLString::m_pszRb},
      {"m_pszDouble1Fmt", &CSQLString::m_pszDouble1Fmt},
      {"m_pszDouble0Fmt", &CSQLString::m_pszDouble0Fmt},
      {"m_pszDoubleFmt", &CSQLString::m_pszDoubleFmt},
      {"m_pszIntFmt", &CSQLString::m_pszIntFmt},
      {"m_pszLongFmt", &CSQLString::m_pszLongFmt},
      {"m_pszEmpty", &CSQLString::m_pszEmpty},
      {"m_pszValid", &CSQLString::m_pszValid},
      {"m_pszOption", &CSQLString::m_pszOption},
      {"m_pszCheck", &CSQLString::m_pszCheck},
      {"m_pszWith", &CSQLString::m_pszWith},
      {"m_pszDisabled", &CSQLString::m_pszDisabled},
      {"m_pszINDEX1", &CSQLString::m_pszINDEX1},
      {"m_pszAlter", &CSQLString::m_pszAlter},
      {"m_pszChar", &CSQLString::m_pszChar},
      {"m_pszRaw", &CSQLString::m_pszRaw},
      {"m_pszVarChar2", &CSQLString::m_pszVarChar2},
      {"m_pszVarChar", &CSQLString::m_pszVarChar},
      {"m_pszFloat", &CSQLString::m_pszFloat},
      {"m_pszNumber", &CSQLString::m_pszNumber},
      {"m_pszEnabled", &CSQLString::m_pszEnabled},
      {"m_pszFK", &CSQLString::m_pszFK},
      {"m_pszFK1", &CSQLString::m_pszFK1},
      {"m_pszPK", &CSQLString::m_pszPK},
      {"m_pszOne", &CSQLString::m_pszOne},
      {"m_pszZero", &CSQLString::m_pszZero},
      {"m_pszYYYY", &CSQLString::m_pszYYYY},
      {"m_pszYY", &CSQLString::m_pszYY},
      {"m_pszPeriod", &CSQLString::m_pszPeriod},
      {"m_pszComma", &CSQLString::m_pszComma},
      {"m_pszYYMMDD", &CSQLString::m_pszYYMMDD},
      {"m_pszMMDDYY", &CSQLString::m_pszMMDDYY},
      {"m_pszDDMMYY", &CSQLString::m_pszDDMMYY},
      {"m_pszMONDDYY", &CSQLString::m_pszMONDDYY},
      {"m_pszDDMONYY", &CSQLString::m_pszDDMONYY},
      {"m_pszCourierNew", &CSQLString::m_pszCourierNew},
      {"m_pszEndOfLn", &CSQLString::m_pszEndOfLn},
      {"m_pszPackage", &CSQLString::m_pszPackage},
      {"m_pszStar", &CSQLString::m_pszStar},
      {"m_pszHash", &CSQLString::m_pszHash},
      {"m_pszNot", &CSQLString::m_pszNot},
      {"m_pszDistinct", &CSQLString::m_pszDistinct},
      {"m_pszVariance", &CSQLString::m_pszVariance},
      {"m_pszSum", &CSQLString::m_pszSum},
      {"m_pszStddev", &CSQLString::m_pszStddev},
      {"m_pszMin", &CSQLString::m_pszMin},
      {"m_pszMax", &CSQLString::m_pszMax},
      {"m_pszLub", &CSQLString::m_pszLub},
      {"m_pszGlb", &CSQLString::m_pszGlb},
      {"m_pszCount", &CSQLString::m_pszCount},
      {"m_pszAvg", &CSQLString::m_pszAvg},
      {"m_pszGroup", &CSQLString::m_pszGroup},
      {"m_pszConnect", &CSQLString::m_pszConnect},
      {"m_pszStart", &CSQLString::m_pszStart},
      {"m_pszHaving", &CSQLString::m_pszHaving},
      {"m_pszFor", &CSQLString::m_pszFor},
      {"m_pszBy", &CSQLString::m_pszBy},
      {"m_pszOrder", &CSQLString::m_pszOrder},
      {"m_pszAll", &CSQLString::m_pszAll},
      {"m_pszIntersect", &CSQLString::m_pszIntersect},
      {"m_pszMinus", &CSQLString::m_pszMinus},
      {"m_pszUnion", &CSQLString::m_pszUnion},
      {"m_pszRightBrace", &CSQLString::m_pszRightBrace},
      {"m_pszLeftBrace", &CSQLString::m_pszLeftBrace},
      {"m_pszINSERT", &CSQLString::m_pszINSERT},
      {"m_pszUPDATE", &CSQLString::m_pszUPDATE},
      {"m_pszDELETE", &CSQLString::m_pszDELETE},
      {"m_pszSELECT", &CSQLString::m_pszSELECT},
      {"m_pszDefault", &CSQLString::m_pszDefault},
      {"m_pszFalse", &CSQLString::m_pszFalse},
      {"m_pszSYN", &CSQLString::m_pszSYN},
      {"m_pszPercent", &CSQLString::m_pszPercent},
      {"m_pszlf", &CSQLString::m_pszlf},
      {"m_pszIndex", &CSQLString::m_pszIndex},
      {"m_pszCluster", &CSQLString::m_pszCluster},
      {"m_pszSpace", &CSQLString::m_pszSpace},
      {"m_pszNonUnique", &CSQLString::m_pszNonUnique},
      {"m_pszUnique", &CSQLString::m_pszUnique},
      {"m_pszNo1", &CSQLString::m_pszNo1},
      {"m_pszNo", &CSQLString::m_pszNo},
      {"m_pszYes1", &CSQLString::m_pszYes1},
      {"m_pszYes", &CSQLString::m_pszYes},
  };
  return kWords;
}

}  // namespace dq
