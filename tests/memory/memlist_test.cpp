// The block list on its own, and the byte-level helpers of the dump and
// fill commands.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
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
    LlenarMemoria(buf, 10, 'D', 0);  // returns, leaving what the endless loop would
    EXPECT_EQ(std::string(buf, 12), "D...........");
}

}  // namespace
