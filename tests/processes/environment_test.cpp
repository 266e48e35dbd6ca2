// The environment commands, seen from the shell and from the programs it runs.
#include "processes/helpers.h"

namespace {

using namespace proctest;

std::string Addr(const std::string &out, const std::string &label) {
    std::smatch m;
    std::regex r(label + R"(\s+(0x[0-9a-f]+) \(almacenado en (0x[0-9a-f]+)\))");
    return std::regex_search(out, m, r) ? m[1].str() : "";
}

TEST(Entorno, PutenvMovesEnvironButNotMainsArray) {
    labtest::TempDir d;
    labtest::RunOptions o;
    o.env["LABSH_T_A"] = "uno";
    auto r = Script(d,
                    "showenv -addr\n"
                    "changevar -a LABSH_T_A dos\n"
                    "fg printenv LABSH_T_A\n"
                    "showvar LABSH_T_A\n"
                    "changevar -p LABSH_T_NEW hola\n"
                    "showenv -addr\n"
                    "showvar LABSH_T_NEW\n"
                    "fg printenv LABSH_T_NEW\n"
                    "changevar -a LABSH_T_A tres\n"
                    "fg printenv LABSH_T_A\n"
                    "showvar LABSH_T_A\n",
                    o);
    auto ls = Lines(r.out);
    ASSERT_EQ(ls.size(), 15u) << r.out;
    EXPECT_TRUE(std::regex_match(ls[0], std::regex(R"(environ:   0x[0-9a-f]+ \(almacenado en 0x[0-9a-f]+\))")));
    EXPECT_TRUE(std::regex_match(ls[1], std::regex(R"(main arg3: 0x[0-9a-f]+ \(almacenado en 0x[0-9a-f]+\))")));
    std::string antes = ls[0] + "\n" + ls[1];
    EXPECT_EQ(Addr(antes, "environ:"), Addr(antes, "main arg3:"));
    EXPECT_EQ(ls[2], "dos");
    EXPECT_TRUE(std::regex_match(ls[3], std::regex(R"(Con arg3 main LABSH_T_A=dos\(0x[0-9a-f]+\) @0x[0-9a-f]+)")));
    EXPECT_TRUE(std::regex_match(ls[4], std::regex(R"(  Con environ LABSH_T_A=dos\(0x[0-9a-f]+\) @0x[0-9a-f]+)")));
    EXPECT_TRUE(std::regex_match(ls[5], std::regex(R"(   Con getenv dos\(0x[0-9a-f]+\))")));
    std::string despues = ls[6] + "\n" + ls[7];
    EXPECT_NE(Addr(despues, "environ:"), Addr(despues, "main arg3:"));
    EXPECT_EQ(Addr(despues, "main arg3:"), Addr(antes, "main arg3:"));
    // A new variable lives only in the moved array.
    EXPECT_TRUE(std::regex_match(ls[8], std::regex(R"(  Con environ LABSH_T_NEW=hola\(0x[0-9a-f]+\) @0x[0-9a-f]+)")));
    EXPECT_TRUE(std::regex_match(ls[9], std::regex(R"(   Con getenv hola\(0x[0-9a-f]+\))")));
    EXPECT_EQ(ls[10], "hola");
    // main's array is no longer what programs inherit.
    EXPECT_EQ(ls[11], "dos");
    EXPECT_TRUE(Contains(ls[12], "Con arg3 main LABSH_T_A=tres("));
    EXPECT_TRUE(Contains(ls[13], "  Con environ LABSH_T_A=dos("));
    EXPECT_EQ(r.status, 0);
}

TEST(Entorno, ListingsAndUsageLines) {
    labtest::TempDir d;
    labtest::RunOptions o;
    o.env["LABSH_T_A"] = "uno";
    o.env["LABSH_T_B"] = "dos";
    auto r = Script(d,
                    "showenv\n"
                    "showenv -environ\n"
                    "showvar LABSH_T_NADA\n"
                    "envvar LABSH_T_NADA\n"
                    "changevar -a LABSH_T_NADA 1\n"
                    "changevar -x LABSH_T_A 1\n"
                    "changevar -a\n"
                    "subsvar -e LABSH_T_A LABSH_T_B x\n"
                    "subsvar -a LABSH_T_NADA LABSH_T_C x\n"
                    "subsvar -a x\n"
                    "subsvar -x a b c\n"
                    "envvar -subs -x a b c\n"
                    "envvar -change\n"
                    "entorno -x\n"
                    "changevarWrong a b\n"
                    "changevarWrong -e -mx LABSH_T_A b\n"
                    "cambiarvarMal -p -mo LABSH_T_A b\n"
                    "subsvar -e LABSH_T_A LABSH_T_C tres\n"
                    "fg printenv LABSH_T_C\n"
                    "fg printenv LABSH_T_A\n",
                    o);
    std::string out = r.out;
    auto ls = Lines(out);
    // Both listings show every variable, numbered from 0, with the label.
    std::regex principal(R"(0x[0-9a-f]+->main arg3\[(\d+)\]=\(0x[0-9a-f]+\) (.*))");
    std::regex environ_(R"(0x[0-9a-f]+->environ\[(\d+)\]=\(0x[0-9a-f]+\) (.*))");
    size_t i = 0, n = 0;
    for (; i < ls.size() && std::regex_match(ls[i], principal); i++) n++;
    ASSERT_GT(n, 1u);
    for (size_t j = 0; j < n; j++, i++) ASSERT_TRUE(std::regex_match(ls[i], environ_)) << ls[i];
    std::vector<std::string> resto(ls.begin() + static_cast<long>(i), ls.end());
    std::vector<std::string> esperado{
        "Imposible cambiar variable: No such file or directory",
        "Uso: changevar [-a|-e|-p] var valor",
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
    EXPECT_EQ(r.status, 0);
}

TEST(Entorno, WrongWaysDoWhatTheySay) {
    labtest::TempDir d;
    labtest::RunOptions o;
    o.env["LABSH_T_X"] = "abc";
    o.env["LABSH_T_Y"] = "def";
    o.env["LABSH_T_Z"] = "ghi";
    auto r = Script(d,
                    "changevarWrong -a -mo LABSH_T_Z xyz\n"
                    "fg printenv LABSH_T_Z\n"
                    "changevarWrong -e -ms LABSH_T_X 111\n"
                    "changevarWrong -e -ms LABSH_T_Y 222\n"
                    "showvar LABSH_T_X\n"
                    "fg printenv LABSH_T_Y\n"
                    "changevarWrong -e -ms LABSH_T_NADA 1\n"
                    "changevar -p LABSH_T_MUEVE 1\n"
                    "changevarWrong -a -ms LABSH_T_Z 333\n"
                    "changevarWrong -p -ms LABSH_T_P 444\n"
                    "fg printenv LABSH_T_P\n",
                    o);
    std::vector<std::string> esperado{
        "LABSH_T_Z MAL cambiada accediendo a traves de environ, por haber sobreescrito variable original",
        "xyz",
        "LABSH_T_X MAL cambiada accediendo a traves de environ, por haber usado una variable estatica",
        "LABSH_T_Y MAL cambiada accediendo a traves de environ, por haber usado una variable estatica",
        // The second change found the first slot, which shares the buffer
        // and so already read LABSH_T_Y; the original LABSH_T_Y stays.
        "222",
        "def",
        // Writing the name into the shared buffer makes it findable.
        "LABSH_T_NADA MAL cambiada accediendo a traves de environ, por haber usado una variable estatica",
        "LABSH_T_Z MAL cambiada accediendo a traves de tercer argumento de main, por haber usado una variable estatica",
        "LABSH_T_P MAL cambiada accediendo a traves de putenv, por haber usado una variable estatica",
        "444",
    };
    EXPECT_EQ(Lines(r.out), esperado);
}

TEST(Entorno, AutomaticBufferLine) {
    if (Sanitized()) GTEST_SKIP() << "leaves the environment pointing into a dead stack frame";
    labtest::TempDir d;
    labtest::RunOptions o;
    o.env["LABSH_T_X"] = "abc";
    auto r = Script(d, "changevarWrong -x -ma LABSH_T_NADA 1\nchangevarWrong -e -ma LABSH_T_X 1\n", o);
    std::vector<std::string> esperado{
        "LABSH_T_NADA MAL cambiada accediendo a traves de environ, por haber usado una variable local",
        "Imposible cambiar variable: No such file or directory",
        "LABSH_T_X MAL cambiada accediendo a traves de environ, por haber usado una variable local",
    };
    EXPECT_EQ(Lines(r.out), esperado);
}

TEST(Entorno, ProgramEnvironmentWords) {
    labtest::TempDir d;
    labtest::RunOptions o;
    o.env["HOME"] = "/casa/labsh";
    o.env["LABSH_T_A"] = "uno";
    std::string muchas, justas;
    for (int i = 0; i < 130; i++) muchas += " LABSH_V" + std::to_string(i) + "=1";
    for (int i = 0; i < 128; i++) justas += " LABSH_V" + std::to_string(i) + "=1";
    auto r = Script(d,
                    "fg HOME X=1 env\n"
                    "fg NULLENV env\n"
                    "fg LABSH_T_A env\n"
                    "fg" + justas + " env\n"
                    "fg" + muchas + " env\n"
                    "fg HOME\n"
                    "execute HOME\n"
                    "execute LABSH_T_A HOME env\n"
                    "showenv -x\n",
                    o);
    auto ls = Lines(r.out);
    ASSERT_GE(ls.size(), 5u) << r.out;
    EXPECT_EQ(ls[0], "HOME=/casa/labsh");
    EXPECT_EQ(ls[1], "X=1");
    EXPECT_EQ(ls[2], "LABSH_T_A=uno");
    int vars = 0;
    for (const auto &l : ls)
        if (l.rfind("LABSH_V", 0) == 0) vars++;
    EXPECT_EQ(vars, 128);
    EXPECT_EQ(ls[ls.size() - 2], "LABSH_T_A=uno");
    EXPECT_EQ(ls.back(), "HOME=/casa/labsh");
    // The 129th word is taken as the program.
    EXPECT_TRUE(Contains(r.err, "No ejecutado: No such file or directory\n")) << r.err;
    EXPECT_TRUE(Contains(r.err, "No ejecutado: Bad address\nImposible ejecutar: Bad address\n")) << r.err;
    EXPECT_EQ(r.status, 0);
}

}  // namespace
