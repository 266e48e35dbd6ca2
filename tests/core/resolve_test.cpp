#include <gtest/gtest.h>

#include <string>

#include "core/core.h"

namespace {

// Override and abbreviations are global switches: each test sets what it
// needs and puts them back.
class Resolucion : public testing::Test {
  protected:
    void TearDown() override {
        OverRide("off");
        DeshabilitarAbreviaturas();
    }
    static std::string R(const char *w) {
        const char *r = RealCommand(w);
        return r == nullptr ? "(ambigua)" : r;
    }
};

}  // namespace

TEST_F(Resolucion, AliasesResolveOnlyForWordsOfTheListsWhileOverrideIsOff) {
    EXPECT_EQ(R("numserie"), "version");
    EXPECT_EQ(R("bye"), "exit");
    EXPECT_EQ(R("listfile"), "stat");  // the alias table holds
    EXPECT_EQ(R("cd"), "cd");          // not in the current lists
    OverRide("on");
    EXPECT_EQ(R("cd"), "chdir");
    EXPECT_EQ(R("sigprocmask"), "sigprocmask");
    EXPECT_EQ(R("nada"), "nada");
}

TEST_F(Resolucion, AbbreviationsAndTheTwoRowRule) {
    OverRide("on");
    EXPECT_EQ(R("hist"), "hist");  // disabled: unchanged
    HabilitarAbreviaturas();
    EXPECT_EQ(R("hist"), "historic");
    EXPECT_EQ(R("vers"), "version");
    EXPECT_EQ(R("he"), "help");
    EXPECT_EQ(R("abb"), "abbrev");
    EXPECT_EQ(R("prom"), "prompt");
    EXPECT_EQ(R("hou"), "time");
    EXPECT_EQ(R("syste"), "systemd");
    // Two rows of one command both match a prefix of its name.
    for (const char *w : {"ver", "tim", "ls", "pw", "sy", "ex", "lim", "exi"}) EXPECT_EQ(R(w), "(ambigua)") << w;
    // No row names the commands without aliases.
    EXPECT_EQ(R("checkv"), "checkv");
    EXPECT_EQ(R("checkvalid"), "checkvalid");
    // Exact names and aliases never go through the prefix search.
    EXPECT_EQ(R("time"), "time");
    EXPECT_EQ(R("cd"), "chdir");
    OverRide("off");
    // Ambiguity is found even for words the lists do not hold.
    EXPECT_EQ(R("ver"), "(ambigua)");
    EXPECT_EQ(R("hist"), "historic");
}

TEST_F(Resolucion, TableQueries) {
    EXPECT_EQ(IsInternalCommand("version"), 1);
    EXPECT_EQ(IsInternalCommand("numserie"), 0);
    EXPECT_EQ(IsInternalCommand("checkvalid"), 0);  // it has no alias row
    EXPECT_EQ(IsCmdOrAlias("numserie"), 1);
    EXPECT_EQ(IsCmdOrAlias("override"), 0);
    EXPECT_EQ(GetAliasesLength("exit"), 25u);  // "salir bye fin quit salir "
    EXPECT_EQ(GetAliasesLength("override"), 0u);
    int filas = 0;
    for (const EntradaComando *c = TablaComandos(); c->nombre != nullptr; c++) filas++;
    EXPECT_EQ(filas, 129);
    int alias = 0;
    for (const EntradaAlias *a = TablaAlias(); a->comando != nullptr; a++) alias++;
    EXPECT_EQ(alias, 164);
}

TEST_F(Resolucion, AssignmentLists) {
    for (const char *w : {"numserie", "historic", "exit", "bye", "help", "memory", "path", "pplano", "override"})
        EXPECT_EQ(IsValidCommand(w), 1) << w;
    for (const char *w : {"version", "quit", "ls", "checkvalid", "ayuda"}) EXPECT_EQ(IsValidCommand(w), 0) << w;
    EXPECT_EQ(OverRide(nullptr), 0);
    EXPECT_EQ(OverRide("si"), 0);
    EXPECT_EQ(OverRide("on"), 1);
    EXPECT_EQ(OverRide(nullptr), 1);
    // Every list holds some word that exists, so the check returns 0.
    EXPECT_EQ(CheckValidCommands(0), 0);
}

TEST(Ayuda, TopicsAndHelpTexts) {
    EXPECT_EQ(GetTopic("files"), 0x4u);
    EXPECT_EQ(GetTopic("SFmemoria"), 0x100u);
    EXPECT_EQ(GetTopic("otros"), 0x1u);
    EXPECT_EQ(GetTopic("nada"), 0u);
    EXPECT_STREQ(CadenaDeAyuda("pwd"), "\tMuestra el directorio actual del shell");
    EXPECT_STREQ(CadenaDeAyuda("cwd"), "no encontrado");
    EXPECT_STREQ(CadenaDeAyuda(nullptr), "no encontrado");
}

TEST(Ayuda, ListingWithoutATerminatorPutsEveryGroupOnItsOwnLine) {
    testing::internal::CaptureStdout();
    ListCommands(0x1);
    std::string s = testing::internal::GetCapturedStdout();
    EXPECT_EQ(s, "\nexit \nsalir bye fin quit salir \nhistoric \nprevious \ncommand \ncmd comando \nprompt \naviso \n");
}

TEST(Ayuda, PideAyudaLooksOnlyAtTheSecondWord) {
    char w0[] = "historic", w1[] = "-count", w2[] = "-?";
    char *sin[] = {w0, w1, w2, nullptr};
    EXPECT_EQ(PideAyuda(sin), 0);
    char *con[] = {w0, w2, nullptr};
    testing::internal::CaptureStdout();
    EXPECT_EQ(PideAyuda(con), 1);
    std::string s = testing::internal::GetCapturedStdout();
    EXPECT_EQ(s.rfind("historic: [-clear|-count|-N|N]\t", 0), 0u) << s;
    char *solo[] = {w0, nullptr};
    EXPECT_EQ(PideAyuda(solo), 0);
}
