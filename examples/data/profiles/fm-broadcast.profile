<?xml version="1.0" encoding="UTF-8"?>
<profile id="fm-broadcast" showInChannelList="1">
  <label lang="en">FM broadcast (Band II)</label>
  <label lang="de">UKW-Rundfunk (Band II)</label>
  <description lang="en">Carriers on multiples of 100 kHz from 87.6 to 107.9 MHz, named by their frequency in units of 100 kHz (876 is 87.6 MHz). Source: ITU-R Recommendation BS.450; Final Acts of the VHF sound broadcasting conference, Geneva 1984 (GE84).</description>
  <description lang="de">Träger auf Vielfachen von 100 kHz von 87,6 bis 107,9 MHz, benannt nach ihrer Frequenz in Einheiten von 100 kHz (876 ist 87,6 MHz). Quelle: Empfehlung ITU-R BS.450; Schlussakte der UKW-Rundfunkkonferenz, Genf 1984 (GE84).</description>
  <begin>87.5 MHz</begin>
  <end>108 MHz</end>
  <channels>
    <color>#3366cc</color>
    <!-- A station takes 200 kHz on a raster of 100 kHz, so neighbours overlap by half: the gap is negative. -->
    <channels start="87.5 MHz" width="200 kHz" space="-100 kHz" first="876" count="204"/>
  </channels>
</profile>
