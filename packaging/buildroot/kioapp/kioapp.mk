################################################################################
#
# kioapp
#
################################################################################

KIOAPP_VERSION = 1.2.3
KIOAPP_SITE = $(call qstrip,$(BR2_PACKAGE_KIOAPP_SOURCE))
KIOAPP_SITE_METHOD = local
KIOAPP_INSTALL_STAGING = YES
# No licence has been chosen, so there is no KIOAPP_LICENSE.
KIOAPP_REDISTRIBUTE = NO

# Each of them is an option KIO_WITH_... of the build.
KIOAPP_PARTS = VARIABLES FIRMWARE AUTH DUMP
KIOAPP_CONF_OPTS = \
	-DCMAKE_BUILD_TYPE=MinSizeRel \
	-DKIO_BUILD_HOST=OFF \
	$(if $(BR2_TOOLCHAIN_USES_MUSL),-DKIO_TARGET_LIBC=musl) \
	$(if $(BR2_TOOLCHAIN_USES_UCLIBC),-DKIO_TARGET_LIBC=uclibc) \
	$(foreach part,$(KIOAPP_PARTS),\
		-DKIO_WITH_$(part)=$(if $(BR2_PACKAGE_KIOAPP_WITH_$(part)),ON,OFF))

$(eval $(cmake-package))
