#include "Pictures/PictureModule.h"

#include "Pictures/Module/QtImages.h"
#include "Pictures/Module/ThemedIcons.h"

const Images* tandemImages()
{
    static const QtImages images;
    return &images;
}

void tandemDrawIcon(const IconRequest& request, std::shared_ptr<const Bitmap>& picture)
{
    static ThemedIcons icons;
    // What it says of pictures that are none is kept from the user.
    tandemImages();
    picture = icons.picture(request);
}
