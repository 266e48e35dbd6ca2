// The block list on its own, and the byte-level helpers of the dump and
// fill commands.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <regex>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

#include "memory/memory.h"

namespace {

// A list of its own per test (L belongs to the shell), emptied on the way out.
struct Lista {
    std::unique_ptr<ListaMemoria> l = std::make_unique<ListaMemoria>();
    Lista() { CrearLista(l.get()); }
    ~Lista() {
        while (PrimerElemento(l.get()) != nullptr) EliminarNodoDireccion(l.get(), PrimerElemento(l.get()));
    }
    ListaMemoria *operator->() { return l.get(); }
    operator ListaMemoria *() { return l.get(); }
};

void *Dir(uintptr_t n) { return reinterpret_cast<void *>(n); }

template <typename F>
std::string Salida(F f) {
    fflush(stdout);
    testing::internal::CaptureStdout();
    f();
    fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

TEST(ListaMemoria, EmptyListPrintsOnlyItsHeader) {
    Lista l;
    EXPECT_EQ(PrimerElemento(l), nullptr);
    std::string pid = std::to_string(getpid());
    EXPECT_EQ(Salida([&] { ImprimirListaMemCompleta(l); }),
              "******Lista de bloques asignados para el proceso " + pid + "\n");
    EXPECT_EQ(Salida([&] { ImprimirListaMalloc(l); }),
              "******Lista de bloques asignados malloc para el proceso " + pid + "\n");
    EXPECT_EQ(Salida([&] { ImprimirListaShared(l); }),
              "******Lista de bloques asignados shared para el proceso " + pid + "\n");
    EXPECT_EQ(Salida([&] { ImprimirListaMmap(l); }),
              "******Lista de bloques asignados mmap para el proceso " + pid + "\n");
    EXPECT_EQ(Salida([&] { PrintList(l, 3); }), "******Lista de bloques asignados para el proceso " + pid + "\n");
}

TEST(ListaMemoria, HoldsAtMost4096Nodes) {
    Lista l;
    for (int i = 1; i <= MAXBLOQUES; i++) ASSERT_EQ(InsertarNodoMalloc(l, Dir(i * 16), 8), i);
    errno = 0;
    EXPECT_EQ(InsertarNodoMmap(l, Dir(0x999990), 8, 3, "f"), -1);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(l->n, MAXBLOQUES);
    EXPECT_EQ(BuscarNodoDireccion(l, Dir(0x999990)), -1);
    // A freed slot can be used again.
    EXPECT_EQ(EliminarNodoDireccion(l, Dir(16)), 0);
    EXPECT_EQ(InsertarNodoShared(l, Dir(0x999990), 8, 5), MAXBLOQUES);
    EXPECT_EQ(BuscarNodoDireccion(l, Dir(0x999990)), MAXBLOQUES - 1);
}

TEST(ListaMemoria, RemovalKeepsOrderAndClearsTheFreedSlots) {
    Lista l;
    InsertarNodoMalloc(l, Dir(0x100), 1);
    InsertarNodoMalloc(l, Dir(0x200), 2);
    InsertarNodoMalloc(l, Dir(0x300), 3);
    EXPECT_EQ(EliminarNodoDireccion(l, Dir(0x200)), 0);
    ASSERT_EQ(l->n, 2);
    EXPECT_EQ(l->nodos[0]->direccion, Dir(0x100));
    EXPECT_EQ(l->nodos[1]->direccion, Dir(0x300));
    EXPECT_EQ(l->nodos[2], nullptr);
    EXPECT_EQ(EliminarNodoDireccion(l, Dir(0x300)), 0);
    EXPECT_EQ(l->nodos[1], nullptr);
    errno = 0;
    EXPECT_EQ(EliminarNodoDireccion(l, Dir(0x300)), -1);
    EXPECT_EQ(errno, ENXIO);
    EXPECT_EQ(l->n, 1);
}

TEST(ListaMemoria, IterationByAddressSurvivesRemovingTheCurrentNode) {
    Lista l;
    for (uintptr_t a : {0x10, 0x20, 0x30}) InsertarNodoMalloc(l, Dir(a), 4);
    EXPECT_EQ(SiguienteElemento(l, Dir(0x30)), nullptr);
    EXPECT_EQ(SiguienteElemento(l, Dir(0x44)), nullptr);
    std::string visto;
    for (void *p = PrimerElemento(l); p != nullptr;) {
        void *sig = SiguienteElemento(l, p);
        visto += std::to_string(reinterpret_cast<uintptr_t>(p)) + " ";
        EliminarNodoDireccion(l, p);
        p = sig;
    }
    EXPECT_EQ(visto, "16 32 48 ");
    EXPECT_EQ(l->n, 0);
}

TEST(ListaMemoria, LookUpsFindTheOldestMatchOfTheRightKind) {
    Lista l;
    InsertarNodoShared(l, Dir(0x10), 100, 7);   // same size, other kind
    InsertarNodoMalloc(l, Dir(0x20), 100);
    InsertarNodoMalloc(l, Dir(0x30), 100);
    InsertarNodoMmap(l, Dir(0x40), 50, 7, "f");  // same key field, other kind
    InsertarNodoShared(l, Dir(0x50), 200, 7);
    InsertarNodoMmap(l, Dir(0x60), 60, 9, "f");
    InsertarNodo(l, Dir(0x70), 70, 9, nullptr, TIPO_MMAP);  // mmap without a name

    EXPECT_EQ(DireccionNodoMalloc(l, 100), Dir(0x20));
    EXPECT_EQ(DireccionNodoMalloc(l, 200), nullptr);
    EXPECT_EQ(DireccionNodoShared(l, 7), Dir(0x10));
    EXPECT_EQ(DireccionNodoShared(l, 9), nullptr);
    EXPECT_EQ(BuscarNodoClave(l, 7, TIPO_MMAP), 3);
    EXPECT_EQ(BuscarNodoTam(l, 100, TIPO_SHARED | TIPO_MMAP), 0);
    EXPECT_EQ(DireccionNodoMmap(l, "f"), Dir(0x40));
    EXPECT_EQ(DireccionNodoMmap(l, "F"), nullptr);
    EXPECT_EQ(DescriptorNodoMmap(l, "f"), 7);
    EXPECT_EQ(DescriptorNodoMmap(l, "g"), -1);
    EXPECT_EQ(DireccionNodoDescriptor(l, 9), Dir(0x60));
    EXPECT_EQ(DireccionNodoDescriptor(l, 0), nullptr);  // malloc nodes hold 0 but are no mapping

    EXPECT_EQ(TipoNodoDireccion(l, Dir(0x50)), TIPO_SHARED);
    EXPECT_EQ(TamanoNodoDireccion(l, Dir(0x60)), 60u);
    EXPECT_EQ(DescriptorNodoDireccion(l, Dir(0x60)), 9);
    errno = 0;
    EXPECT_EQ(TipoNodoDireccion(l, Dir(0x21)), -1);
    EXPECT_EQ(errno, ENXIO);
    EXPECT_EQ(TamanoNodoDireccion(l, Dir(0x21)), ~uint64_t{0});
    EXPECT_EQ(DescriptorNodoDireccion(l, Dir(0x21)), -1);

    EXPECT_EQ(EliminarDescriptorDireccion(l, Dir(0x40)), 0);
    EXPECT_EQ(DescriptorNodoMmap(l, "f"), -1);
    EXPECT_EQ(EliminarDescriptorDireccion(l, Dir(0x41)), -1);
}

TEST(ListaMemoria, NodesOwnACopyOfTheFileName) {
    Lista l;
    char nombre[] = "datos.txt";
    InsertarNodoMmap(l, Dir(0x1000), 10, 3, nombre);
    nombre[0] = 'X';
    EXPECT_STREQ(l->nodos[0]->fichero, "datos.txt");
    EXPECT_EQ(InsertarNodoMalloc(l, Dir(0x2000), 1), 2);
    EXPECT_EQ(l->nodos[1]->fichero, nullptr);
    time_t ahora = time(nullptr);
    EXPECT_LE(ahora - l->nodos[1]->tiempo, 2);
}

TEST(ListaMemoria, ElementLinesByKind) {
    // 18:22 on 24 November, local time.
    tm t{};
    t.tm_year = 2025 - 1900;
    t.tm_mon = 10;
    t.tm_mday = 24;
    t.tm_hour = 18;
    t.tm_min = 22;
    t.tm_sec = 48;
    t.tm_isdst = -1;
    time_t cuando = mktime(&t);
    EXPECT_STREQ(ponFecha(cuando), "Nov 24 18:22");

    char fichero[] = "notas.txt";
    NodoMemoria n{Dir(0xabc000), 4096, nullptr, 0, TIPO_MALLOC, cuando};
    EXPECT_EQ(Salida([&] { PrintElement(&n); }), "            0xabc000             4096 Nov 24 18:22 malloc\n");
    n.tipo = TIPO_SHARED;
    n.clave = -2;  // keys print as the unsigned form of the sign-extended value
    EXPECT_EQ(Salida([&] { PrintElement(&n); }),
              "            0xabc000             4096 Nov 24 18:22 shared (key 18446744073709551614)\n");
    n.tipo = TIPO_MMAP;
    n.fichero = fichero;
    n.clave = -1;
    EXPECT_EQ(Salida([&] { PrintElement(&n); }),
              "            0xabc000             4096 Nov 24 18:22 notas.txt  (descriptor -1)\n");
    n.tipo = 3;
    EXPECT_EQ(Salida([&] { PrintElement(&n); }), "            0xabc000             4096 Nov 24 18:22  unknown\n");
}

TEST(ListaMemoria, PrintListSelectsByKindInSlotOrder) {
    Lista l;
    InsertarNodoMalloc(l, Dir(0x10), 1);
    InsertarNodoShared(l, Dir(0x20), 2, 1234);
    InsertarNodoMalloc(l, Dir(0x30), 3);
    std::string s = Salida([&] { ImprimirListaMalloc(l); });
    EXPECT_TRUE(std::regex_match(s, std::regex(R"(\*+Lista de bloques asignados malloc para el proceso \d+
 +0x10 +1 .{12} malloc
 +0x30 +3 .{12} malloc
)"))) << s;
    s = Salida([&] { ImprimirListaShared(l); });
    EXPECT_NE(s.find("0x20"), std::string::npos);
    EXPECT_EQ(s.find("0x10"), std::string::npos);
}

TEST(Volcado, BytesAreShownAsThreeCharacters) {
    EXPECT_STREQ(CadBon('\n'), " \\n");
    EXPECT_STREQ(CadBon('\t'), " \\t");
    EXPECT_STREQ(CadBon('\r'), " \\r");
    EXPECT_STREQ(CadBon('a'), "  a");
    EXPECT_STREQ(CadBon(0), "   ");
    EXPECT_STREQ(CadBon(0xe9), "   ");
    EXPECT_STREQ(CadBon(0x7f), "   ");
}

TEST(Volcado, LinesOfTwentyAndTheRemainder) {
    unsigned char buf[45];
    for (int i = 0; i < 45; i++) buf[i] = static_cast<unsigned char>('a' + i % 26);
    std::string s = Salida([&] { MostrarMemoria(buf, 45); });
    EXPECT_EQ(std::count(s.begin(), s.end(), '\n'), 6);
    std::string cuarenta = Salida([&] { MostrarMemoria(buf, 40); });
    EXPECT_EQ(std::count(cuarenta.begin(), cuarenta.end(), '\n'), 4);
    EXPECT_EQ(s.compare(0, cuarenta.size(), cuarenta), 0);
    EXPECT_EQ(Salida([&] { MostrarMemoria(buf, 0); }), "");
    char p[32];
    snprintf(p, sizeof p, "%p", static_cast<void *>(buf + 40));
    EXPECT_NE(s.find(std::string(p) + "->   o  p  q  r  s\n" + p + "->  6f 70 71 72 73\n"), std::string::npos) << s;
}

TEST(Relleno, ByteWordsAndSteps) {
    EXPECT_EQ(ConvertirByte("'B'"), 'B');
    EXPECT_EQ(ConvertirByte("0x42"), 0x42);
    EXPECT_EQ(ConvertirByte("66"), 66);
    EXPECT_EQ(ConvertirByte("0102"), 66);
    EXPECT_EQ(ConvertirByte("300"), 0x2c);
    EXPECT_EQ(ConvertirByte("zz"), 0);
    EXPECT_EQ(ConvertirByte("'"), 0);

    char buf[12];
    memset(buf, '.', sizeof buf);
    LlenarMemoria(buf, 10, 'A', 3);
    EXPECT_EQ(std::string(buf, 12), "A..A..A..A..");
    memset(buf, '.', sizeof buf);
    LlenarMemoria(buf, 10, 'B', -2);  // wraps past the count after offset 0
    EXPECT_EQ(std::string(buf, 12), "B...........");
    LlenarMemoria(buf, 0, 'C', 1);
    EXPECT_EQ(buf[0], 'B');
}

}  // namespace
