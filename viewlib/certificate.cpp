/* SPDX-License-Identifier: Apache-2.0 */
#include "certificate.h"

#include "files.h"

#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>

namespace viewlib
{

namespace
{

template <typename T, void (*release)(T*)> struct Release
{
    void operator()(T* pointer) const
    {
        release(pointer);
    }
};
using Key = std::unique_ptr<EVP_PKEY, Release<EVP_PKEY, EVP_PKEY_free>>;
using X509Certificate = std::unique_ptr<X509, Release<X509, X509_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Release<X509_EXTENSION, X509_EXTENSION_free>>;
using Memory = std::unique_ptr<BIO, Release<BIO, BIO_free_all>>;

void require(bool done)
{
    if (!done)
    {
        throw std::runtime_error("the HTTPS certificate cannot be made");
    }
}

std::string textOf(BIO* memory)
{
    char* bytes = nullptr;
    const long length = BIO_get_mem_data(memory, &bytes);
    return std::string(bytes, static_cast<std::size_t>(length));
}

std::string namesOf(const std::vector<std::string>& addresses)
{
    std::set<std::string> unique = {"127.0.0.1", "::1"};
    unique.insert(addresses.begin(), addresses.end());
    std::string names = "DNS:localhost";
    for (const std::string& address : unique)
    {
        names += ",IP:" + address;
    }
    return names;
}

void fill(X509* certificate, EVP_PKEY* key, const std::vector<std::string>& addresses)
{
    constexpr long day = 24L * 60 * 60;
    require(X509_set_version(certificate, 2) == 1);
    require(ASN1_INTEGER_set(X509_get_serialNumber(certificate), static_cast<long>(std::time(nullptr))) == 1);
    require(X509_gmtime_adj(X509_getm_notBefore(certificate), -day) != nullptr);
    require(X509_gmtime_adj(X509_getm_notAfter(certificate), 3652 * day) != nullptr);
    require(X509_set_pubkey(certificate, key) == 1);

    X509_NAME* name = X509_get_subject_name(certificate);
    const auto* common = reinterpret_cast<const unsigned char*>("viewlib");
    require(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, common, -1, -1, 0) == 1);
    require(X509_set_issuer_name(certificate, name) == 1);

    const std::string names = namesOf(addresses);
    const Extension extension(X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, names.c_str()));
    require(extension != nullptr && X509_add_ext(certificate, extension.get(), -1) == 1);
    require(X509_sign(certificate, key, EVP_sha256()) != 0);
}

const char* const keyFile = "viewlib.key";
const char* const certificateFile = "viewlib.crt";

[[noreturn]] void refuse(const std::string& path, const std::string& why)
{
    throw std::runtime_error("HTTPS: \"" + path + "\": " + why);
}

/* Nothing when there is no such file. */
std::optional<std::string> readIfThere(const std::string& path)
{
    const FileContent content = readFile(path);
    if (content.error != 0 && content.error != ENOENT)
    {
        refuse(path, std::strerror(content.error));
    }
    return content.error == 0 ? std::optional<std::string>(content.bytes) : std::nullopt;
}

/* Renamed into place: whoever reads it sees all of it. */
void writeFile(const std::string& path, const std::string& text, mode_t mode)
{
    const std::string draft = path + ".new";
    unlink(draft.c_str()); /* of a start that was cut off, perhaps with another mode */
    const int fd = open(draft.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    const bool written =
        fd >= 0 && write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size()) && fsync(fd) == 0;
    const int error = errno;
    if (fd >= 0)
    {
        close(fd);
    }
    if (!written || std::rename(draft.c_str(), path.c_str()) != 0)
    {
        refuse(path, std::strerror(written ? errno : error));
    }
}

Memory reader(const std::string& text)
{
    Memory memory(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())));
    require(memory != nullptr);
    return memory;
}

X509Certificate parseCertificate(const std::string& text)
{
    return X509Certificate(PEM_read_bio_X509(reader(text).get(), nullptr, nullptr, nullptr));
}

/* A key that asks for a pass phrase is none that a server could use. */
int noPhrase(char*, int, int, void*)
{
    return 0;
}

void check(const Certificate& pair, const std::string& directory)
{
    const Key key(PEM_read_bio_PrivateKey(reader(pair.key).get(), nullptr, noPhrase, nullptr));
    if (key == nullptr)
    {
        refuse(directory + "/" + keyFile, "this is no private key in PEM form");
    }
    const std::string path = directory + "/" + certificateFile;
    const X509Certificate certificate = parseCertificate(pair.certificate);
    if (certificate == nullptr)
    {
        refuse(path, "this is no certificate in PEM form");
    }
    if (X509_check_private_key(certificate.get(), key.get()) != 1)
    {
        refuse(path, std::string("it does not belong to the key in \"") + keyFile + '"');
    }
    if (X509_cmp_current_time(X509_get0_notAfter(certificate.get())) < 0)
    {
        refuse(path, "it has expired; remove it to have a new one made");
    }
}

} // namespace

Certificate makeCertificate(const std::vector<std::string>& addresses)
{
    const Key key(EVP_EC_gen("P-256"));
    const X509Certificate certificate(X509_new());
    require(key != nullptr && certificate != nullptr);
    fill(certificate.get(), key.get(), addresses);

    const Memory keyText(BIO_new(BIO_s_mem()));
    const Memory certificateText(BIO_new(BIO_s_mem()));
    require(PEM_write_bio_PrivateKey(keyText.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) == 1);
    require(PEM_write_bio_X509(certificateText.get(), certificate.get()) == 1);
    return {textOf(keyText.get()), textOf(certificateText.get())};
}

Certificate keptCertificate(const std::string& directory, const std::vector<std::string>& addresses)
{
    const std::string keyPath = directory + "/" + keyFile;
    const std::string certificatePath = directory + "/" + certificateFile;
    const std::optional<std::string> certificate = readIfThere(certificatePath);
    if (!certificate)
    {
        const Certificate made = makeCertificate(addresses);
        writeFile(keyPath, made.key, 0600);
        writeFile(certificatePath, made.certificate, 0644); /* last: a start that was cut off begins anew */
        return made;
    }
    const std::optional<std::string> key = readIfThere(keyPath);
    if (!key)
    {
        refuse(keyPath, std::string("it is missing, but \"") + certificateFile + "\" is there");
    }
    Certificate kept = {*key, *certificate};
    check(kept, directory);
    return kept;
}

std::string fingerprint(const Certificate& certificate)
{
    const X509Certificate parsed = parseCertificate(certificate.certificate);
    unsigned char bytes[EVP_MAX_MD_SIZE];
    unsigned length = 0;
    require(parsed != nullptr && X509_digest(parsed.get(), EVP_sha256(), bytes, &length) == 1);
    std::string text;
    for (unsigned i = 0; i < length; ++i)
    {
        char part[4];
        std::snprintf(part, sizeof part, "%s%02X", i == 0 ? "" : ":", bytes[i]);
        text += part;
    }
    return text;
}

} // namespace viewlib
