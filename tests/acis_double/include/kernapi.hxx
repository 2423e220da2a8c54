// TEST DOUBLE of the ACIS geometry kernel (see acis.hxx): the API
// functions the binding and its tests call.
#pragma once

#include "api.hxx"

class ENTITY_LIST;

// Sets the header fields named by `mask` (FileId, FileUnits) for the
// files saved from now on. Saving needs a product id.
ACIS_DOUBLE_API outcome api_set_file_info(unsigned long mask, FileInfo const& info, AcisOptions* ao = nullptr);
// The header of the last file saved or restored (or as set).
ACIS_DOUBLE_API outcome api_get_file_info(FileInfo& info, AcisOptions* ao = nullptr);

// Saves the entities of `list` and everything they point to.
ACIS_DOUBLE_API outcome api_save_entity_list_file(FileInterface* file, ENTITY_LIST const& list,
                                                  AcisOptions* ao = nullptr);
// Restores a saved list: appends the entities that were in it to `list`.
// On error nothing is added and nothing restored stays alive.
ACIS_DOUBLE_API outcome api_restore_entity_list_file(FileInterface* file, ENTITY_LIST& list,
                                                     AcisOptions* ao = nullptr);

// A box centred at the origin: a body with six planar faces.
ACIS_DOUBLE_API outcome api_make_cuboid(double width, double depth, double height, BODY*& body,
                                        AcisOptions* ao = nullptr);
// Appends the faces of `entity` (a body or a face) to `faces`.
ACIS_DOUBLE_API outcome api_get_faces(ENTITY* entity, ENTITY_LIST& faces, AcisOptions* ao = nullptr);
// A copy of `entity` with everything it points to (attributes included).
ACIS_DOUBLE_API outcome api_copy_entity(ENTITY* entity, ENTITY*& copy, AcisOptions* ao = nullptr);
// Loses `entity` with everything it points to.
ACIS_DOUBLE_API outcome api_del_entity(ENTITY* entity, AcisOptions* ao = nullptr);
