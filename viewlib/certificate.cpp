/* SPDX-License-Identifier: Apache-2.0 */
#include "certificate.h"

#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <ctime>
#include <memory>
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

void fill(X509* certificate, EVP_PKEY* key, const std::string& address)
{
    constexpr long day = 24L * 60 * 60;
    require(X509_set_version(certificate, 2) == 1);
    require(ASN1_INTEGER_set(X509_get_serialNumber(certificate), static_cast<long>(std::time(nullptr))) == 1);
    require(X509_gmtime_adj(X509_getm_notBefore(certificate), -day) != nullptr);
    require(X509_gmtime_adj(X509_getm_notAfter(certificate), 365 * day) != nullptr);
    require(X509_set_pubkey(certificate, key) == 1);

    X509_NAME* name = X509_get_subject_name(certificate);
    const auto* common = reinterpret_cast<const unsigned char*>("viewlib");
    require(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, common, -1, -1, 0) == 1);
    require(X509_set_issuer_name(certificate, name) == 1);

    const std::string names = "DNS:localhost,IP:127.0.0.1,IP:::1,IP:" + address;
    const Extension extension(X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, names.c_str()));
    require(extension != nullptr && X509_add_ext(certificate, extension.get(), -1) == 1);
    require(X509_sign(certificate, key, EVP_sha256()) != 0);
}

} // namespace

Certificate makeCertificate(const std::string& address)
{
    const Key key(EVP_EC_gen("P-256"));
    const X509Certificate certificate(X509_new());
    require(key != nullptr && certificate != nullptr);
    fill(certificate.get(), key.get(), address);

    const Memory keyText(BIO_new(BIO_s_mem()));
    const Memory certificateText(BIO_new(BIO_s_mem()));
    require(PEM_write_bio_PrivateKey(keyText.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) == 1);
    require(PEM_write_bio_X509(certificateText.get(), certificate.get()) == 1);
    return {textOf(keyText.get()), textOf(certificateText.get())};
}

} // namespace viewlib
