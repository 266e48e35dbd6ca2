#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "files/files.h"
#include "support/session.h"

TEST(Describe, PermissionStrings) {
    EXPECT_STREQ(Permisos(S_IFREG | 0644), "-rw-r--r-- ");
    EXPECT_STREQ(Permisos(S_IFREG | 04644), "-rwsr--r-- ");
    EXPECT_STREQ(Permisos(S_IFREG | 04744), "-rwsr--r-- ");
    EXPECT_STREQ(Permisos(S_IFREG | 02700), "-rwx--s--- ");
    EXPECT_STREQ(Permisos(S_IFDIR | 01777), "drwxrwxrwt ");
    EXPECT_STREQ(Permisos(S_IFDIR | 01776), "drwxrwxrwt ");
    EXPECT_STREQ(Permisos(S_IFLNK | 0777), "lrwxrwxrwx ");
    EXPECT_STREQ(Permisos(S_IFIFO), "p--------- ");
    EXPECT_STREQ(Permisos(S_IFSOCK | 0700), "srwx------ ");
    EXPECT_STREQ(Permisos(S_IFCHR | 0600), "crw------- ");
    EXPECT_STREQ(Permisos(S_IFBLK | 0660), "brw-rw---- ");
    EXPECT_EQ(TipoFichero(0), '?');
}

TEST(Describe, DateTexts) {
    const char *tz = getenv("TZ");
    std::string antes = tz ? tz : "";
    setenv("TZ", "UTC0", 1);
    tzset();
    time_t t = 1078412645;  // 2004-03-04 15:04:05 UTC, a Thursday
    EXPECT_STREQ(Fecha2(t), "2004/03/04-15:04");
    EXPECT_STREQ(ConvertirDia(t), "04/03/2004");
    EXPECT_STREQ(ConvertirHora(t), "15:04:05");
    EXPECT_STREQ(Fecha(t), "Thu Mar  4 2004");
    EXPECT_STREQ(ConvertirHora(0), "00:00:00");
    if (tz) setenv("TZ", antes.c_str(), 1); else unsetenv("TZ");
    tzset();
}

TEST(Describe, OwnerAndGroupFallbacksDiffer) {
    EXPECT_STREQ(NombreUsuario(static_cast<uid_t>(4242424)), " ??????");
    EXPECT_STREQ(NombreGrupo(static_cast<gid_t>(4242424)), "??????");
    EXPECT_STREQ(NombreUsuario(0), "root");
}

TEST(Describe, LinesAndErrors) {
    labtest::TempDir t;
    labtest::WriteFile(t / "f", "hola");
    ASSERT_EQ(symlink("f", (t / "l").c_str()), 0);
    EXPECT_STREQ(DetallesFichero(1, t.path().c_str(), "f", 0, 0), "       4  f");
    EXPECT_STREQ(DetallesFichero(1, t.path().c_str(), "l", 1, 0), "       1  l -> f");
    EXPECT_STREQ(DetallesFichero(1, t.path().c_str(), "nada", 1, 0),
                 " ****error al acceder a nada:No such file or directory");
    // A path too long for the buffer is never examined cut short.
    std::string largo(2000, 'a');
    EXPECT_STREQ(DetallesFichero(1, t.path().c_str(), largo.c_str(), 0, 0),
                 (" ****error al acceder a " + largo + ":File name too long").c_str());
    EXPECT_EQ(TamanoFichero((t / "f").c_str()), 4);
    EXPECT_EQ(TamanoFichero((t / "nada").c_str()), -1);
    EXPECT_EQ(FechaFichero((t / "nada").c_str()), -1);
    char linea[4096] = "x";
    AnadeEnlace(linea, (t / "f").c_str());
    EXPECT_STREQ(linea, "x -> **error al leer enlace: Invalid argument");
}

TEST(Describe, TypedAddresses) {
    EXPECT_EQ(cadtop("0x10"), reinterpret_cast<void *>(0x10));
    EXPECT_EQ(cadtop("ff"), reinterpret_cast<void *>(0xff));
    errno = 0;
    EXPECT_EQ(cadtop("zz"), nullptr);
    EXPECT_EQ(errno, EFAULT);
    errno = 0;
    EXPECT_EQ(cadtop("0"), nullptr);
    EXPECT_EQ(errno, EFAULT);
    EXPECT_EQ(cadtop(nullptr), nullptr);
}
