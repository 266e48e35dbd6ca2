// The environment commands, seen from the shell and from the programs it runs.
#include "processes/helpers.h"

namespace {

using namespace proctest;

const std::string P = R"(0x[0-9a-f]+)";

bool Es(const std::string &linea, const std::string &regex) { return std::regex_match(linea, std::regex(regex)); }

TEST(ProcesosEntorno, PutenvMovesEnvironButNotMainsArray) {
    labtest::TempDir d;
    labtest::RunOptions o;
    o.env["LABSH_T_A"] = "uno";
    auto r = Script(d,
                    "showenv -addr\nchangevar -a LABSH_T_A dos\nfg printenv LABSH_T_A\nshowvar LABSH_T_A\n"
                    "changevar -p LABSH_T_NEW hola\nshowenv -addr\nshowvar LABSH_T_NEW\nfg printenv LABSH_T_NEW\n"
                    "changevar -a LABSH_T_A tres\nfg printenv LABSH_T_A\nshowvar LABSH_T_A\n",
                    o);
    auto ls = Lines(r.out);
    ASSERT_EQ(ls.size(), 15u) << r.out;
    std::smatch a, b;
    ASSERT_TRUE(std::regex_match(ls[0], a, std::regex("environ:   (" + P + ") \\(almacenado en " + P + "\\)")));
    ASSERT_TRUE(std::regex_match(ls[1], b, std::regex("main arg3: (" + P + ") \\(almacenado en " + P + "\\)")));
    EXPECT_EQ(a[1], b[1]);
    EXPECT_EQ(ls[2], "dos");
    EXPECT_TRUE(Es(ls[3], "Con arg3 main LABSH_T_A=dos\\(" + P + "\\) @" + P));
    EXPECT_TRUE(Es(ls[4], "  Con environ LABSH_T_A=dos\\(" + P + "\\) @" + P));
    EXPECT_TRUE(Es(ls[5], "   Con getenv dos\\(" + P + "\\)"));
    EXPECT_NE(ls[6].substr(0, 30), ls[0].substr(0, 30));  // environ moved
    EXPECT_EQ(ls[7], ls[1]);
    // The new variable lives only in the moved array, which programs inherit.
    EXPECT_TRUE(Es(ls[8], "  Con environ LABSH_T_NEW=hola\\(" + P + "\\) @" + P));
    EXPECT_TRUE(Es(ls[9], "   Con getenv hola\\(" + P + "\\)"));
    EXPECT_EQ(ls[10], "hola");
    EXPECT_EQ(ls[11], "dos");
    EXPECT_TRUE(Contains(ls[12], "Con arg3 main LABSH_T_A=tres("));
    EXPECT_TRUE(Contains(ls[13], "  Con environ LABSH_T_A=dos("));
}

TEST(ProcesosEntorno, ListingsFailuresAndUsageLines) {
    labtest::TempDir d;
    labtest::RunOptions o;
    o.env["LABSH_T_A"] = "uno";
    o.env["LABSH_T_B"] = "dos";
    auto r = Script(d,
                    "showenv\nshowenv -environ\nshowvar LABSH_T_NADA\nenvvar LABSH_T_NADA\n"
                    "changevar -a LABSH_T_NADA 1\nchangevar -x LABSH_T_A 1\nsubsvar -e LABSH_T_A LABSH_T_B x\n"
                    "subsvar -a LABSH_T_NADA LABSH_T_C x\nsubsvar -a x\nsubsvar -x a b c\nenvvar -subs -x a b c\n"
                    "envvar -change\nentorno -x\nchangevarWrong a b\nchangevarWrong -e -mx LABSH_T_A b\n"
                    "cambiarvarMal -p -mo LABSH_T_A b\nsubsvar -e LABSH_T_A LABSH_T_C tres\nfg printenv LABSH_T_C\n"
                    "fg printenv LABSH_T_A\n",
                    o);
    auto ls = Lines(r.out);
    size_t n = 0;
    while (n < ls.size() && Es(ls[n], P + "->main arg3\\[" + std::to_string(n) + "\\]=\\(" + P + "\\) .*")) n++;
    ASSERT_GT(n, 1u);
    for (size_t i = 0; i < n; i++)
        ASSERT_TRUE(Es(ls[n + i], P + "->environ\\[" + std::to_string(i) + "\\]=\\(" + P + "\\) .*")) << ls[n + i];
    std::vector<std::string> resto(ls.begin() + static_cast<long>(2 * n), ls.end());
    std::vector<std::string> esperado{
        "Imposible cambiar variable: No such file or directory",
        "Uso: changevar [-a|-e|-p] var valor",
        "Imposible sustituir variable LABSH_T_A por LABSH_T_B: File exists",
        "Imposible sustituir variable LABSH_T_NADA por LABSH_T_C: No such file or directory",
        "Uso: subsvar [-a|-e] var valor",
        "Uso: subsvar [-a|-e] var1 var2 valor",
        "Uso: -subs [-a|-e] var1 var2 valor",
        "Uso: -change [-a|-e|-p] var valor",
        "Uso: entorno [-environ|-addr]",
        "Uso: changevarWrong -a|-e|-p -mo|-ms|-ml  o|var valor",
        "Uso: changevarWrong -a|-e|-p -mo|-ms|-ma  var valor",
        "LABSH_T_A MAL cambiada accediendo a traves de putenv, por haber sobreescrito variable original",
        "Imposible cambiar variable: Invalid argument",
        "tres",
    };
    EXPECT_EQ(resto, esperado);
}

TEST(ProcesosEntorno, WrongWaysDoWhatTheySay) {
    labtest::TempDir d;
    labtest::RunOptions o;
    for (const char *v : {"LABSH_T_X", "LABSH_T_Y", "LABSH_T_Z"}) o.env[v] = "abc";
    auto r = Script(d,
                    "changevarWrong -x -ma LABSH_T_NADA 1\n"
                        "changevarWrong -a -mo LABSH_T_Z xyz\nfg printenv LABSH_T_Z\n"
                        "changevarWrong -e -ms LABSH_T_X 111\nchangevarWrong -e -ms LABSH_T_Y 222\n"
                        "showvar LABSH_T_X\nfg printenv LABSH_T_Y\nchangevar -p LABSH_T_MUEVE 1\n"
                        "changevarWrong -a -ms LABSH_T_Z 333\n",
                    o);
    std::string mal = " MAL cambiada accediendo a traves de ";
    std::vector<std::string> esperado{
        "LABSH_T_NADA" + mal + "environ, por haber usado una variable local",
        "Imposible cambiar variable: No such file or directory",
        "LABSH_T_Z" + mal + "environ, por haber sobreescrito variable original",
        "xyz",
        "LABSH_T_X" + mal + "environ, por haber usado una variable estatica",
        "LABSH_T_Y" + mal + "environ, por haber usado una variable estatica",
        // The second change found the first slot, whose shared buffer already
        // read LABSH_T_Y; the original LABSH_T_Y stays after it.
        "222",
        "abc",
        "LABSH_T_Z" + mal + "tercer argumento de main, por haber usado una variable estatica",
    };
    EXPECT_EQ(Lines(r.out), esperado);
}

TEST(ProcesosEntorno, ProgramEnvironmentWords) {
    labtest::TempDir d;
    labtest::RunOptions o;
    o.env["HOME"] = "/casa/labsh";
    o.env["LABSH_T_A"] = "uno";
    std::string muchas;
    for (int i = 0; i < 128; i++) muchas += " LABSH_V" + std::to_string(i) + "=1";
    auto r = Script(d,
                    "fg HOME X=1 env\nfg NULLENV env\nfg LABSH_T_A env\nfg" + muchas + " env\n" +
                        // Past the 128 that fit, the next word is taken as the program.
                        "fg" + muchas + " LABSH_V128=1 env\nfg HOME\nexecute HOME\n"
                        "execute LABSH_T_A HOME env\nshowenv -x\n",
                    o);
    auto ls = Lines(r.out);
    ASSERT_EQ(ls.size(), 3u + 128u + 2u) << r.out;
    EXPECT_EQ(std::vector<std::string>(ls.begin(), ls.begin() + 3),
              (std::vector<std::string>{"HOME=/casa/labsh", "X=1", "LABSH_T_A=uno"}));
    EXPECT_EQ(ls[3 + 127], "LABSH_V127=1");
    // The shell became env: nothing after it ran.
    EXPECT_EQ(std::vector<std::string>(ls.end() - 2, ls.end()),
              (std::vector<std::string>{"LABSH_T_A=uno", "HOME=/casa/labsh"}));
    EXPECT_EQ(r.err,
              "No ejecutado: No such file or directory\n"
              "No ejecutado: Bad address\nImposible ejecutar: Bad address\n");
}

}  // namespace
